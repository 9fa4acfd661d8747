pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Quillmere

/// The categories of a cleanup screen on one card, which grows with them until it fills the screen and scrolls.
Item {
    id: root

    required property CleanupCategoryListModel categories
    /// What assistive tools call the list.
    property string accessibleName

    Panel {
        width: parent.width
        height: list.count === 0 ? parent.height : Math.min(parent.height, list.contentHeight + 8)

        EmptyState {
            anchors.fill: parent
            visible: list.count === 0
            symbol: "checkmark.shield"
            sentence: Texts.localized("cleanup.noItemsFound")
        }

        ListView {
            id: list

            readonly property Item focused: Window.activeFocusItem

            /// Scrolls just so far that the row which holds @p item is in sight.
            function bringIntoSight(item: Item) {
                let row = item;
                while (row !== null && row.parent !== contentItem)
                    row = row.parent;
                if (row === null)
                    return;
                if (row.y < contentY)
                    contentY = row.y;
                else if (row.y + row.height > contentY + height)
                    contentY = Math.min(row.y, row.y + row.height - height);
            }

            anchors.fill: parent
            anchors.topMargin: 4
            anchors.bottomMargin: 4
            clip: true
            boundsBehavior: Flickable.StopAtBounds
            // Tab leads over rows that exist: all of these few do, open ones included.
            cacheBuffer: 4000
            model: root.categories

            Accessible.role: Accessible.List
            Accessible.name: root.accessibleName

            onFocusedChanged: bringIntoSight(focused)

            delegate: CleanupCategoryRow {
                width: ListView.view.width
                last: index === ListView.view.count - 1

                onSelectionToggled: selected => root.categories.setSelected(index, selected)
                onExpansionToggled: root.categories.toggleExpanded(index)
            }

            T.ScrollBar.vertical: ScrollIndicatorBar {}
        }
    }
}
