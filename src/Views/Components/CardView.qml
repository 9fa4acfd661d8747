import QtQuick
import Quillmere

/// A card with a header row, the symbol when one is given and the title, above its content.
Panel {
    id: root

    property string title
    property string icon
    /// Turns in the place of the symbol while something goes on, and is called `workingText`.
    property bool working: false
    property string workingText: Texts.localized("control.loading")
    /// What stands at the right end of the header row.
    property alias trailing: trailingSlot.data
    default property alias body: bodySlot.data

    implicitHeight: bodySlot.y + bodySlot.childrenRect.height + Theme.cardPadding

    Accessible.role: Accessible.Grouping
    Accessible.name: title

    Symbol {
        id: symbol

        x: Theme.cardPadding
        y: 17
        visible: root.icon !== ""
        opacity: root.working ? 0 : 1
        name: root.icon
        size: 18
        color: Theme.accent
    }

    Loader {
        anchors.centerIn: symbol
        active: root.working
        sourceComponent: Spinner {
            Accessible.role: Accessible.ProgressBar
            Accessible.name: root.workingText // qmllint disable unqualified
        }
    }

    HeadingText {
        id: header

        x: symbol.visible ? symbol.x + 27 : Theme.cardPadding
        y: 14
        width: root.width - x - Theme.cardPadding - (trailingSlot.width > 0 ? trailingSlot.width + 12 : 0)
        height: Math.max(24, implicitHeight)
        text: root.title
        wrapMode: Text.Wrap

        Accessible.role: Accessible.Heading
    }

    Item {
        id: trailingSlot

        anchors.right: parent.right
        anchors.rightMargin: Theme.cardPadding
        y: header.y + (24 - height) / 2
        width: childrenRect.width
        height: childrenRect.height
    }

    Item {
        id: bodySlot

        x: Theme.cardPadding
        y: Math.max(50, header.y + header.height + 12)
        width: root.width - 2 * Theme.cardPadding
        height: root.height - y - Theme.cardPadding
    }
}
