pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
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

    ListView {
        anchors.fill: parent
        anchors.topMargin: 41
        anchors.bottomMargin: 4
        topMargin: 4
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        reuseItems: true
        model: root.logs

        Accessible.role: Accessible.List
        Accessible.name: Texts.localized("nav.history")

        delegate: HistoryRow {
            width: ListView.view.width
            columns: root.columns
            last: index === ListView.view.count - 1

            onClicked: root.logs.toggleExpanded(index)
        }

        T.ScrollBar.vertical: ScrollIndicatorBar {}
    }
}
