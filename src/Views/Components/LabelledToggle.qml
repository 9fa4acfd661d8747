import QtQuick
import Quillmere

/// A switch with its words beside it. Pressing the words is pressing the switch.
Item {
    id: root

    property string text
    property bool on: false

    signal switched(bool on)

    implicitWidth: 400
    implicitHeight: Math.max(Theme.smallestHitArea, label.implicitHeight + 12)

    Toggle {
        id: toggle

        anchors.verticalCenter: parent.verticalCenter
        enabled: root.enabled
        on: root.on
        accessibleName: root.text

        onSwitched: on => root.switched(on)
    }

    BodyText {
        id: label

        x: toggle.width + 12
        width: parent.width - x
        height: parent.height
        text: root.text
        color: root.enabled ? Theme.text : Theme.textTertiary
        wrapMode: Text.Wrap

        Accessible.ignored: true

        TapHandler {
            onTapped: root.switched(!root.on)
        }
    }
}
