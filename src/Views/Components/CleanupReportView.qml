pragma ComponentBehavior: Bound

import QtQuick
import Quillmere

/// The sheet that tells what a cleanup did.
Sheet {
    id: root

    required property cleanupReport report

    signal done

    sheetWidth: 460
    contentMargin: 28
    accessibleName: Texts.localized("cleanup.report.title")
    initialFocus: doneButton

    onDismissed: done()

    Column {
        width: parent.width

        Ripple {
            anchors.horizontalCenter: parent.horizontalCenter
            symbol: "checkmark.circle.fill"
            dropSize: 48
            color: Theme.greenRipple
        }

        SheetTitleText {
            width: parent.width
            topPadding: 8
            bottomPadding: 12
            text: Texts.localized("cleanup.report.title")
            horizontalAlignment: Text.AlignHCenter
        }

        CleanupReportRow {
            width: parent.width
            label: Texts.localized("cleanup.report.spaceFreed")
            figure: root.report.spaceFreed
            prominent: true
        }

        CleanupReportRow {
            width: parent.width
            label: Texts.localized("cleanup.report.filesRemoved")
            figure: root.report.filesRemoved
            last: root.report.filesSkipped === ""
        }

        CleanupReportRow {
            width: parent.width
            visible: root.report.filesSkipped !== ""
            label: Texts.localized("cleanup.report.filesSkipped")
            figure: root.report.filesSkipped
            last: true
        }

        CleanupReportErrors {
            width: parent.width
            visible: root.report.errors.length > 0
            errors: root.report.errors
        }

        Item {
            width: parent.width
            height: doneButton.height + 28

            ActionButton {
                id: doneButton

                y: 20
                width: parent.width
                kind: ActionButton.Primary
                size: ActionButton.Large
                text: Texts.localized("common.done")

                onClicked: root.done()
            }
        }
    }
}
