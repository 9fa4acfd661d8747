import QtQuick
import Quillmere

/// A startup item: its name and file, its type and risk, and the switch that says whether it is started.
Item {
    id: root

    required property int index
    required property string name
    required property string pathText
    required property string typeText
    required property int riskLevel
    required property bool isEnabled
    required property StartupColumns columns

    property bool last: false
    property bool concealed: false
    /// The keyboard is here and was brought here by keys.
    property bool ringed: false

    readonly property bool marked: pointer.hovered || ringed

    signal picked
    signal switched
    signal menuRequested(real x, real y, bool byKeyboard)

    function askForMenu() {
        menuRequested(moreButton.x, moreButton.y + moreButton.height + 4, true);
    }

    implicitHeight: 58

    Accessible.role: Accessible.ListItem
    Accessible.name: name + ", " + typeText + ", " + badge.label + ", "
                     + Texts.localized(isEnabled ? "control.on" : "control.off") + ", " + pathText
    Accessible.description: Texts.localized("control.hint.toggle") + ". " + Texts.localized("control.hint.menu")
    Accessible.ignored: concealed
    Accessible.focusable: true
    Accessible.focused: activeFocus
    Accessible.onPressAction: switched()

    Keys.onMenuPressed: askForMenu()
    Keys.onReturnPressed: switched()
    Keys.onEnterPressed: switched()
    Keys.onSpacePressed: switched()
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

    Item {
        x: 8
        y: 3
        width: parent.width - 16
        height: parent.height - 6

        Rectangle {
            anchors.fill: parent
            visible: pointer.hovered
            radius: Theme.rowRadius
            color: Theme.hover
        }

        FocusRing {
            shown: root.ringed
            gap: 0
            controlRadius: Theme.rowRadius
        }
    }

    ElidingText {
        x: root.columns.nameX
        y: 10
        width: root.columns.nameWidth
        height: 20
        text: root.name
        size: 14
        weight: Font.Bold

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

    ElidingText {
        x: root.columns.typeX
        width: root.columns.typeWidth
        height: parent.height
        text: root.typeText
        color: Theme.textSecondary

        Accessible.ignored: true
    }

    RiskBadge {
        id: badge

        x: root.columns.riskX
        anchors.verticalCenter: parent.verticalCenter
        width: Math.min(implicitWidth, root.columns.riskWidth)
        riskLevel: root.riskLevel

        Accessible.ignored: true
    }

    Toggle {
        x: root.columns.statusX
        anchors.verticalCenter: parent.verticalCenter
        focusPolicy: Qt.NoFocus
        on: root.isEnabled
        accessibleName: root.name

        Accessible.ignored: root.concealed

        onSwitched: {
            root.picked();
            root.switched();
        }
    }

    IconButton {
        id: moreButton

        x: root.columns.moreX
        anchors.verticalCenter: parent.verticalCenter
        kind: root.marked ? IconButton.Framed : IconButton.Plain
        opacity: root.marked ? 1 : 0.55
        focusPolicy: Qt.NoFocus
        symbol: "ellipsis"
        accessibleName: Texts.localized("control.openMenu")

        Accessible.ignored: root.concealed

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
