import QtQuick
import Quillmere

/// A row of a KeyedList with a menu, which opens by a right click, by the menu key and by the button at `moreX`. Return,
/// Space and assistive tools do what `activated` stands for.
Item {
    id: root

    required property int index
    required property RowMenu menu

    /// What the menu is told that the row stands for.
    property var record
    property real moreX
    property real dividerFrom: Theme.cardPadding
    /// Not to be seen, and so not to be used, but the keyboard may stay.
    property bool concealed: false
    default property alias cells: slot.data

    readonly property KeyedList list: menu.list
    readonly property bool ringed: activeFocus && list.isByKeyboard
    readonly property bool marked: pointer.hovered || ringed

    signal activated

    function showMenu(x: real, y: real, byKeyboard: bool) {
        if (!concealed)
            menu.show(root, record, x, y, byKeyboard);
    }

    function askForMenu() {
        showMenu(moreButton.x, moreButton.y + moreButton.height + 4, true);
    }

    function activateByKey(event: var) {
        // A key that is held down was meant for the row as it stood first.
        if (!event.isAutoRepeat && !list.bringBack())
            activated();
    }

    function askForMenuByKey() {
        if (!list.bringBack())
            askForMenu();
    }

    implicitHeight: list.rowHeight

    Accessible.role: Accessible.ListItem
    Accessible.ignored: concealed
    Accessible.focusable: true
    Accessible.focused: activeFocus
    Accessible.onPressAction: activated()

    Keys.onMenuPressed: askForMenuByKey()
    Keys.onReturnPressed: event => activateByKey(event)
    Keys.onEnterPressed: event => activateByKey(event)
    Keys.onSpacePressed: event => activateByKey(event)
    Keys.onPressed: event => {
        if (event.key === Qt.Key_F10 && (event.modifiers & Qt.ShiftModifier)) {
            event.accepted = true;
            askForMenuByKey();
        }
    }

    HiddenWhilePooled {
        target: root.ListView
        row: root
    }

    HoverHandler {
        id: pointer
    }

    TapHandler {
        onTapped: root.list.pick(root.index)
    }

    TapHandler {
        acceptedButtons: Qt.RightButton

        onTapped: point => {
            root.list.pick(root.index);
            root.showMenu(point.position.x, point.position.y, false);
        }
    }

    RowHighlight {
        shown: pointer.hovered
        ringed: root.ringed
    }

    Item {
        id: slot

        anchors.fill: parent
    }

    IconButton {
        id: moreButton

        x: root.moreX
        anchors.verticalCenter: parent.verticalCenter
        kind: root.marked ? IconButton.Framed : IconButton.Plain
        opacity: root.marked ? 1 : 0.55
        focusPolicy: Qt.NoFocus
        symbol: "ellipsis"
        accessibleName: Texts.localized("control.openMenu")

        Accessible.ignored: root.concealed

        onClicked: {
            root.list.pick(root.index);
            root.showMenu(x, y + height + 4, false);
        }
    }

    Divider {
        x: root.dividerFrom
        y: parent.height - 1
        width: parent.width - x - Theme.cardPadding
        visible: root.index < root.list.count - 1 && !root.marked
    }
}
