import QtQuick
import Quillmere

/// The confirmations before a disk is erased, one after the other, and the message at the end.
AlertDialog {
    id: root

    required property DiskUtilityState utility
    /// The sheet is open.
    property bool shown: false

    readonly property bool isStanding: [DiskAlert.Confirm1, DiskAlert.Confirm2, DiskAlert.Confirm3, DiskAlert.Finished].includes(utility.alert)
    /// What is said: the state, and while the alert goes, the one it had.
    property int shownAlert: DiskAlert.None
    property bool hasSucceeded: false

    readonly property bool isOver: shownAlert === DiskAlert.Finished
    readonly property bool isTyped: shownAlert === DiskAlert.Confirm3

    function titleKey(): string {
        switch (shownAlert) {
        case DiskAlert.Confirm2:
            return "disk.confirm2";
        case DiskAlert.Confirm3:
            return "disk.confirm3";
        case DiskAlert.Finished:
            return "disk.operationFinished";
        default:
            return "disk.confirm1";
        }
    }

    function messageKey(): string {
        switch (shownAlert) {
        case DiskAlert.Confirm2:
            return "disk.systemWarning";
        case DiskAlert.Confirm3:
            return "disk.finalWarning";
        case DiskAlert.Finished:
            return hasSucceeded ? "disk.success" : "disk.failure";
        default:
            return "disk.eraseWarning";
        }
    }

    visible: shown && isStanding
    destructive: !isOver
    symbol: isOver && hasSucceeded ? "checkmark.circle" : "exclamationmark.triangle"
    title: Texts.localized(titleKey())
    message: Texts.localized(messageKey())
    stepCount: isOver ? 0 : 3
    step: shownAlert
    cancelText: isOver ? "" : Texts.localized("common.cancel")
    confirmText: Texts.localized(isTyped ? "disk.eraseSystem" : isOver ? "common.ok" : "disk.proceed")

    onConfirmed: isTyped ? utility.eraseSystem() : isOver ? utility.dismiss() : utility.proceed()
    onDismissed: utility.dismiss()
    // Who goes on by the keyboard begins each step at the way out.
    onShownAlertChanged: {
        if (visible)
            Qt.callLater(takeFocus);
    }

    Binding {
        target: root
        property: "shownAlert"
        value: root.utility.alert
        when: root.isStanding
        restoreMode: Binding.RestoreNone
    }

    Binding {
        target: root
        property: "hasSucceeded"
        value: root.utility.hasSucceeded
        when: root.isStanding
        restoreMode: Binding.RestoreNone
    }

    Binding {
        target: root
        property: "initialFocus"
        value: entry
        when: root.isTyped
    }

    Column {
        width: parent.width
        spacing: 14

        ElidingText {
            width: parent.width
            visible: !root.isOver
            text: root.utility.selectedText
            weight: Font.DemiBold
            elide: Text.ElideMiddle
            horizontalAlignment: Text.AlignHCenter
        }

        TextEntry {
            id: entry

            width: parent.width
            visible: root.isTyped
            label: Texts.localized("disk.typeErase")
            text: root.utility.confirmInputText

            onTextChanged: root.utility.confirmInputText = text
        }
    }
}
