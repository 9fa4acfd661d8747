pragma ComponentBehavior: Bound

import QtQuick
import Quillmere

/// A record of the history; opened, what the run did.
ListRow {
    id: root

    required property int index
    required property string dateText
    required property string operationText
    required property string cleanedText
    required property int status
    required property string statusText
    required property bool isExpanded
    required property string removedText
    required property string skippedText
    required property string categoriesText
    required property var errors
    required property HistoryColumns columns
    required property KeyedList list

    readonly property int rowHeight: list.rowHeight
    readonly property color statusColor: [Theme.greenText, Theme.orangeText, Theme.redText, Theme.textSecondary][status]

    focusPolicy: Qt.NoFocus
    ringed: activeFocus && list.isByKeyboard
    last: index === list.count - 1
    implicitHeight: rowHeight + (isExpanded ? details.height + 12 : 0)
    highlightHeight: rowHeight
    highlightMargin: 4
    accessibleName: dateText + ", " + operationText + ", " + cleanedText + ", " + statusText

    Accessible.description: Texts.localized(isExpanded ? "control.collapse" : "control.expand")
    Accessible.focusable: true
    Accessible.focused: activeFocus

    HiddenWhilePooled {
        target: root.ListView
        row: root
    }

    TapHandler {
        onTapped: root.list.pick(root.index)
    }

    Item {
        anchors.fill: parent

        ElidingText {
            x: root.columns.dateX
            width: root.columns.dateWidth
            height: root.rowHeight
            text: root.dateText
            wrapMode: Text.Wrap
            maximumLineCount: 2
        }

        ElidingText {
            x: root.columns.typeX
            width: root.columns.typeWidth
            height: root.rowHeight
            text: root.operationText
            weight: Font.DemiBold
            wrapMode: Text.Wrap
            maximumLineCount: 2
        }

        Figure {
            x: root.columns.sizeX + root.columns.sizeWidth - width
            y: (root.rowHeight - height) / 2
            text: root.cleanedText
            weight: Font.DemiBold
        }

        StatusLabel {
            x: root.columns.statusX
            width: root.columns.statusWidth
            height: root.rowHeight
            text: root.statusText
            color: root.statusColor
        }

        Symbol {
            x: parent.width - Theme.cardPadding - width
            y: (root.rowHeight - height) / 2
            name: root.isExpanded ? "chevron.up" : "chevron.down"
            size: 18
            color: Theme.textTertiary
        }

        HistoryDetails {
            id: details

            x: Theme.cardPadding
            y: root.rowHeight
            width: parent.width - 2 * Theme.cardPadding
            visible: root.isExpanded
            removedText: root.removedText
            skippedText: root.skippedText
            categoriesText: root.categoriesText
            errors: root.isExpanded ? root.errors : []
        }
    }
}
