pragma ComponentBehavior: Bound

import QtQuick
import Quillmere

/// The records under the heads of their columns.
Item {
    id: root

    required property HistoryListModel logs

    readonly property HistoryColumns columns: HistoryColumns {
        width: root.width
    }

    ColumnHeading {
        x: root.columns.dateX
        y: 6
        width: root.columns.dateWidth
        text: Texts.localized("history.detail.date")
    }

    ColumnHeading {
        x: root.columns.typeX
        y: 6
        width: root.columns.typeWidth
        text: Texts.localized("history.detail.type")
    }

    ColumnHeading {
        x: root.columns.sizeX
        y: 6
        width: root.columns.sizeWidth
        horizontalAlignment: Text.AlignRight
        text: Texts.localized("history.detail.cleaned")
    }

    ColumnHeading {
        x: root.columns.statusX
        y: 6
        width: root.columns.statusWidth
        text: Texts.localized("history.detail.status")
    }

    Divider {
        y: 40
        width: parent.width
    }

    KeyedList {
        id: records

        anchors.fill: parent
        anchors.topMargin: 41
        anchors.bottomMargin: 1
        accessibleName: Texts.localized("nav.history")
        rowHeight: 48
        model: root.logs

        delegate: HistoryRow {
            width: ListView.view.width
            list: records
            columns: root.columns

            onClicked: {
                root.logs.toggleExpanded(index);
                Qt.callLater(records.showHead, index); // qmllint disable type
            }
        }
    }
}
