import QtQuick
import Quillmere

/// A modal sheet: title, content that scrolls when the window is small, and a row of buttons. A closable one has a
/// button for it in its header.
ModalPopup {
    id: root

    property string title
    property int sheetWidth: 600
    property bool closable: true
    property int contentMargin: 24
    /// The buttons at the right end of the footer; without any there is no footer.
    property alias footer: footerSlot.data
    default property alias body: bodySlot.data

    readonly property real headerHeight: title === "" ? 0 : Math.max(66, heading.implicitHeight + 36)
    readonly property real footerHeight: footerSlot.children.length === 0 ? 0 : footerSlot.height + 46
    readonly property real bodyHeight: bodySlot.childrenRect.height + 2 * scroll.gap

    surfaceWidth: Math.min(sheetWidth, roomWidth)
    surfaceHeight: Math.min(headerHeight + 1 + bodyHeight + footerHeight, roomHeight)
    accessibleName: title

    SheetTitleText {
        id: heading

        x: root.contentMargin
        y: (root.headerHeight - height) / 2
        width: (closeButton.visible ? closeButton.x - 12 : root.surfaceWidth - root.contentMargin) - x
        visible: text !== ""
        text: root.title
    }

    ActionButton {
        id: closeButton

        anchors.right: parent.right
        anchors.rightMargin: 20
        y: (root.headerHeight - height) / 2
        visible: root.closable && root.title !== ""
        size: ActionButton.Small
        text: Texts.localized("common.close")

        onClicked: root.dismissed()
    }

    Divider {
        y: root.headerHeight
        width: parent.width
        visible: root.title !== ""
    }

    ScrollArea {
        id: scroll

        readonly property int gap: 16

        y: root.headerHeight + 1
        width: parent.width
        height: parent.height - y - root.footerHeight
        contentHeight: root.bodyHeight

        Item {
            id: bodySlot

            x: root.contentMargin
            y: scroll.gap
            width: root.surfaceWidth - 2 * root.contentMargin
            height: childrenRect.height
        }
    }

    Divider {
        anchors.bottom: parent.bottom
        anchors.bottomMargin: root.footerHeight
        width: parent.width
        visible: root.footerHeight > 0
    }

    Row {
        id: footerSlot

        anchors.right: parent.right
        anchors.rightMargin: 24
        y: parent.height - root.footerHeight + (root.footerHeight - height) / 2
        spacing: 10
    }
}
