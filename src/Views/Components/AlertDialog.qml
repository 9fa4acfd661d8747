import QtQuick
import Quillmere

/// A question or a message: symbol, title, text, and one or two buttons with the confirming one at the right. Steps
/// show how far a staged confirmation has come.
ModalPopup {
    id: root

    property string title
    property string message
    /// What is shown: the message, and while the dialog goes, the one it had.
    property string shownMessage
    property string symbol: "exclamationmark.triangle"
    property bool destructive: false
    property string confirmText
    property string cancelText
    property bool confirmEnabled: true
    property int stepCount: 0
    property int step: 0
    /// What stands between the text and the buttons.
    default property alias body: bodySlot.data

    readonly property color toneColor: destructive ? Theme.redText : Theme.accent
    readonly property int side: 36
    readonly property real buttonRoom: surfaceWidth - 2 * side
    readonly property bool stacked: cancelText !== ""
        && cancelButton.implicitWidth + confirmButton.implicitWidth + 12 > buttonRoom

    signal confirmed()

    surfaceWidth: Math.min(400, roomWidth)
    surfaceHeight: Math.min(column.implicitHeight + 48, roomHeight)
    accessibleName: title
    initialFocus: cancelText !== "" ? cancelButton : confirmButton

    Binding on shownMessage {
        value: root.message
        when: root.message !== ""
        restoreMode: Binding.RestoreNone
    }

    ScrollArea {
        anchors.fill: parent
        anchors.topMargin: 24
        anchors.bottomMargin: 20
        contentHeight: column.implicitHeight

        Column {
            id: column

            x: root.side
            width: root.buttonRoom
            bottomPadding: 4

            Rectangle {
                anchors.horizontalCenter: parent.horizontalCenter
                width: 52
                height: 52
                radius: 26
                color: Theme.tint(root.toneColor, 0.12)

                Symbol {
                    anchors.centerIn: parent
                    name: root.symbol
                    size: 26
                    color: root.toneColor
                }
            }

            StepDashes {
                anchors.horizontalCenter: parent.horizontalCenter
                visible: count > 0
                count: root.stepCount
                filled: root.step
                color: root.destructive ? Theme.destructiveTop : Theme.accentFill
            }

            SheetTitleText {
                width: parent.width
                topPadding: 14
                text: root.title
                size: 17
                horizontalAlignment: Text.AlignHCenter
            }

            BodyText {
                width: parent.width
                topPadding: 8
                visible: text !== ""
                text: root.shownMessage
                color: Theme.textSecondary
                lineHeight: 19
                lineHeightMode: Text.FixedHeight
                wrapMode: Text.Wrap
                horizontalAlignment: Text.AlignHCenter
            }

            Item {
                width: parent.width
                height: bodySlot.height > 0 ? bodySlot.height + 16 : 0

                Item {
                    id: bodySlot

                    y: 16
                    width: parent.width
                    height: childrenRect.height
                }
            }

            Item {
                width: parent.width
                height: 24 + confirmButton.height + (root.stacked ? cancelButton.height + 10 : 0)

                ActionButton {
                    id: cancelButton

                    y: root.stacked ? 24 + confirmButton.height + 10 : 24
                    width: root.stacked ? parent.width : Math.max(implicitWidth, Math.round(parent.width * 0.4))
                    visible: text !== ""
                    size: ActionButton.Large
                    text: root.cancelText

                    onClicked: root.dismissed()
                }

                ActionButton {
                    id: confirmButton

                    x: root.stacked || !cancelButton.visible ? 0 : cancelButton.width + 12
                    y: 24
                    width: parent.width - x
                    enabled: root.confirmEnabled
                    size: ActionButton.Large
                    kind: root.destructive ? ActionButton.Destructive : ActionButton.Primary
                    text: root.confirmText

                    onClicked: root.confirmed()
                    // Takes the second of two quick presses, which was not meant for what comes next.
                    onDoubleClicked: {}
                }
            }
        }
    }
}
