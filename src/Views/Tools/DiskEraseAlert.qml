import QtQuick
import Quillmere

/// The confirmations before a disk is erased, one after the other, and the message at the end.
AlertDialog {
    id: root

    required property DiskUtilityState utility
    /// The sheet is open.
    property bool shown: false

    visible: shown && utility.isAsking
    destructive: !utility.isOver
    symbol: utility.symbol
    title: Texts.localized(utility.titleKey)
    message: Texts.localized(utility.messageKey)
    stepCount: utility.isOver ? 0 : 3
    step: utility.step
    cancelText: utility.isOver ? "" : Texts.localized("common.cancel")
    confirmText: Texts.localized(utility.confirmKey)

    onConfirmed: utility.confirm()
    onDismissed: utility.dismiss()
    // Who goes on by the keyboard begins each step at the way out.
    onStepChanged: {
        if (visible)
            Qt.callLater(takeFocus); // qmllint disable type
    }

    Binding {
        target: root
        property: "initialFocus"
        value: entry
        when: root.utility.isTyped
    }

    Column {
        width: parent.width
        spacing: 14

        ElidingText {
            width: parent.width
            visible: !root.utility.isOver
            text: root.utility.selectedText
            weight: Font.DemiBold
            elide: Text.ElideMiddle
            horizontalAlignment: Text.AlignHCenter
        }

        TextEntry {
            id: entry

            width: parent.width
            visible: root.utility.isTyped
            label: Texts.localized("disk.typeErase")
            text: root.utility.confirmInputText

            onTextChanged: root.utility.confirmInputText = text
        }
    }
}
