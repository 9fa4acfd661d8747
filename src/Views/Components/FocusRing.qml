import QtQuick
import Quillmere

/// The mark of the control that the keyboard speaks to. It stands around its parent, clear of it by `gap`.
Rectangle {
    id: root

    required property bool shown
    property real controlRadius: Theme.controlRadius
    property int gap: 2

    anchors.fill: parent
    anchors.margins: -(gap + border.width)
    visible: shown
    radius: controlRadius + gap + border.width
    color: "transparent"
    border.width: 2
    border.color: Theme.focusRing
}
