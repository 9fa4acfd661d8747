import QtQuick
import Quillmere

/// A button that opens a menu below itself.
ActionButton {
    id: root

    required property ContextMenu menu

    symbol: "chevron.down"

    onClicked: menu.popup(root, 0, root.height + 4)
}
