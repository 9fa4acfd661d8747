import QtQuick
import Quillmere

/// The ground of a field that is typed into. Its ring shows whenever it has the focus, since the keyboard speaks to it.
Rectangle {
    id: root

    property bool focused: false

    radius: Theme.controlRadius
    color: Theme.inset
    border.width: 1
    border.color: Theme.insetBorder

    FocusRing {
        shown: root.focused
        gap: 1
    }
}
