import QtQuick
import Quillmere

/// What is switched at the left, with a line that explains it, and its switch at the right. Pressing the words is
/// pressing the switch.
Item {
    id: root

    property string text
    property string caption
    property bool on: false

    signal switched(bool on)

    implicitHeight: Math.max(Theme.smallestHitArea, words.height)

    Column {
        id: words

        anchors.verticalCenter: parent.verticalCenter
        width: root.width - toggle.width - 24
        spacing: 4

        BodyText {
            width: parent.width
            text: root.text
            wrapMode: Text.Wrap

            Accessible.ignored: true
        }

        CaptionText {
            width: parent.width
            visible: text !== ""
            text: root.caption
            wrapMode: Text.Wrap
        }

        TapHandler {
            onTapped: root.switched(!root.on)
        }
    }

    Toggle {
        id: toggle

        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        on: root.on
        accessibleName: root.text

        onSwitched: on => root.switched(on)
    }
}
