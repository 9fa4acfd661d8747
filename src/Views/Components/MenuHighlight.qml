import QtQuick
import Quillmere

/// The ground of a menu's line: a highlight under the pointer or the keyboard, a check at its left when chosen.
Rectangle {
    id: root

    property bool shown: false
    property bool checked: false

    radius: 7
    color: shown ? Theme.hover : "transparent"

    Symbol {
        x: 8
        anchors.verticalCenter: parent.verticalCenter
        visible: root.checked
        name: "check"
        size: 16
        color: Theme.accent
    }
}
