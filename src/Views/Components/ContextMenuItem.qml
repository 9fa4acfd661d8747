import QtQuick
import QtQuick.Templates as T
import Quillmere

/// One action of a menu, with a symbol or a check before its text.
T.MenuItem {
    id: root

    property string symbol
    property bool destructive: false

    readonly property color ink: !enabled ? Theme.tint(Theme.textTertiary, 0.75) : destructive ? Theme.redText : Theme.text

    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    implicitHeight: 30
    leftPadding: 32
    rightPadding: 16

    Accessible.role: Accessible.MenuItem
    Accessible.name: text
    Accessible.onPressAction: {
        if (root.enabled)
            root.triggered();
    }

    background: MenuHighlight {
        shown: root.highlighted && root.enabled
        checked: root.checkable && root.checked

        Symbol {
            x: 8
            anchors.verticalCenter: parent.verticalCenter
            name: root.checkable ? "" : root.symbol
            size: 16
            color: root.destructive ? root.ink : Theme.textSecondary
        }
    }

    contentItem: BodyText {
        text: root.text
        weight: Font.Medium
        color: root.ink

        Accessible.ignored: true
    }
}
