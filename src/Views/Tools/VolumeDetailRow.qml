import QtQuick
import Quillmere

/// One thing that is known of a volume.
Item {
    id: root

    property string label
    property string value
    property color color: Theme.text
    property string symbol

    implicitHeight: Math.max(26, caption.implicitHeight + 8)

    Accessible.role: Accessible.StaticText
    Accessible.name: label + ": " + value

    CaptionText {
        id: caption

        width: parent.width * 0.42
        height: parent.height
        text: root.label
        wrapMode: Text.Wrap

        Accessible.ignored: true
    }

    Symbol {
        anchors.right: text.left
        anchors.rightMargin: 6
        anchors.verticalCenter: parent.verticalCenter
        visible: root.symbol !== ""
        name: root.symbol
        size: 14
        color: root.color
    }

    ElidingText {
        id: text

        anchors.right: parent.right
        width: Math.min(implicitWidth, parent.width * 0.56 - (root.symbol === "" ? 0 : 20))
        height: parent.height
        text: root.value
        weight: Font.Medium
        color: root.color
        elide: Text.ElideMiddle
        horizontalAlignment: Text.AlignRight

        Accessible.ignored: true
    }
}
