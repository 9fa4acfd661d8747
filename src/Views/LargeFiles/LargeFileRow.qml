import QtQuick
import Quillmere

/// A large file: what kind it is, its name and place, its size and date, and what can be done with it.
Item {
    id: root

    required property int index
    required property var file
    required property string name
    required property string pathText
    required property string iconName
    required property string sizeText
    required property string dateText
    required property LargeFileColumns columns

    property bool last: false
    /// The keyboard is here and was brought here by keys.
    property bool ringed: false

    readonly property bool marked: pointer.hovered || ringed

    signal picked
    signal menuRequested(real x, real y, bool byKeyboard)

    function askForMenu() {
        menuRequested(moreButton.x, moreButton.y + moreButton.height + 4, true);
    }

    implicitHeight: 58

    Accessible.role: Accessible.ListItem
    Accessible.name: name + ", " + sizeText + ", " + dateText + ", " + pathText
    Accessible.description: Texts.localized("control.hint.menu")
    Accessible.focusable: true
    Accessible.focused: activeFocus
    Accessible.onPressAction: askForMenu()

    Keys.onMenuPressed: askForMenu()
    Keys.onReturnPressed: askForMenu()
    Keys.onEnterPressed: askForMenu()
    Keys.onSpacePressed: askForMenu()
    Keys.onPressed: event => {
        if (event.key === Qt.Key_F10 && (event.modifiers & Qt.ShiftModifier)) {
            event.accepted = true;
            askForMenu();
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
        onTapped: root.picked()
    }

    TapHandler {
        acceptedButtons: Qt.RightButton

        onTapped: point => {
            root.picked();
            root.menuRequested(point.position.x, point.position.y, false);
        }
    }

    Rectangle {
        x: 8
        y: 3
        width: parent.width - 16
        height: parent.height - 6
        visible: pointer.hovered
        radius: Theme.rowRadius
        color: Theme.hover
    }

    Rectangle {
        x: 6
        y: 1
        width: parent.width - 12
        height: parent.height - 2
        visible: root.ringed
        radius: Theme.rowRadius + 2
        color: "transparent"
        border.width: 2
        border.color: Theme.focusRing
    }

    IconTile {
        x: root.columns.iconX
        anchors.verticalCenter: parent.verticalCenter
        symbol: root.iconName
    }

    ElidingText {
        x: root.columns.nameX
        y: 10
        width: root.columns.nameWidth
        height: 20
        text: root.name
        size: 14
        weight: Font.DemiBold
        elide: Text.ElideMiddle

        Accessible.ignored: true
    }

    ElidingText {
        x: root.columns.nameX
        y: 31
        width: root.columns.nameWidth
        height: 16
        text: root.pathText
        size: 12
        color: Theme.textTertiary
        elide: Text.ElideMiddle

        Accessible.ignored: true
    }

    Figure {
        x: root.columns.sizeEnd - width
        anchors.verticalCenter: parent.verticalCenter
        text: root.sizeText
        size: 14
        weight: Font.DemiBold

        Accessible.ignored: true
    }

    ElidingText {
        x: root.columns.dateX
        width: root.columns.dateWidth
        height: parent.height
        text: root.dateText
        color: Theme.textSecondary

        Accessible.ignored: true
    }

    IconButton {
        id: moreButton

        x: root.columns.actionsX
        anchors.verticalCenter: parent.verticalCenter
        kind: root.marked ? IconButton.Framed : IconButton.Plain
        opacity: root.marked ? 1 : 0.55
        focusPolicy: Qt.NoFocus
        symbol: "ellipsis"
        accessibleName: Texts.localized("control.openMenu")

        onClicked: {
            root.picked();
            root.menuRequested(x, y + height + 4, false);
        }
    }

    Divider {
        x: root.columns.nameX
        y: parent.height - 1
        width: parent.width - x - Theme.cardPadding
        visible: !root.last && !root.marked
    }
}
