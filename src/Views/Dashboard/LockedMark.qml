import QtQuick
import Quillmere

/// Stands where an application of the system cannot be ended.
Item {
    implicitWidth: 30
    implicitHeight: 30

    Accessible.role: Accessible.StaticText
    Accessible.name: Texts.localized("resource.systemProcess")

    HoverHandler {
        id: pointer
    }

    Symbol {
        anchors.centerIn: parent
        name: "lock"
        size: 18
        color: Theme.textTertiary
    }

    HoverTip {
        text: Texts.localized("resource.systemProcess")
        shown: pointer.hovered
    }
}
