pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Quillmere

/// The destinations of the main window, and among them the promotion. Up and Down move the selection.
Item {
    id: root

    required property AppState appState
    required property SidebarListModel entries
    required property ViewModelFactory viewModels

    /// Selects the destination next to entry @p from, @p step being 1 or -1; headers and the promotion are passed over.
    function selectNeighbour(from: int, step: int) {
        for (let i = from + step; i >= 0 && i < list.count; i += step) {
            const entry = list.itemAtIndex(i) as SidebarEntry;
            if (entry !== null && entry.isDestination) {
                entry.forceActiveFocus(Qt.TabFocusReason);
                root.appState.selectedTab = entry.tab;
                return;
            }
        }
    }

    Rectangle {
        anchors.fill: parent
        gradient: Gradient {
            GradientStop {
                position: 0
                color: Theme.sidebarTop
            }

            GradientStop {
                position: 1
                color: Theme.sidebarBottom
            }
        }
    }

    Rectangle {
        anchors.right: parent.right
        width: 1
        height: parent.height
        color: Theme.sidebarHairline
    }

    ListView {
        id: list

        /// The chosen entry stays in sight when the window shrinks or the promotion above it grows, until the user
        /// scrolls it away.
        property bool keepsChosenInSight: true

        // The list takes no other current entry while it makes its entries.
        function choose(index: int) {
            Qt.callLater(showChosen, index); // qmllint disable type
        }

        function showChosen(index: int) {
            currentIndex = index;
            keepsChosenInSight = true;
            keepInSight();
        }

        /// Whoever scrolls the chosen entry away does not want it brought back.
        function follow(isScrolled: bool) {
            keepsChosenInSight = !isScrolled && currentItem !== null && currentItem.y >= contentY
                    && currentItem.y + currentItem.height <= contentY + height;
        }

        function keepInSight() {
            if (keepsChosenInSight)
                positionViewAtIndex(currentIndex, ListView.Contain);
        }

        anchors.fill: parent
        anchors.rightMargin: 1
        topMargin: 10
        bottomMargin: 10
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        // The list is short, and the arrow keys reach for rows out of sight.
        cacheBuffer: 2000
        model: root.entries

        Accessible.role: Accessible.List
        Accessible.name: Texts.localized("control.sidebar")

        T.ScrollBar.vertical: ScrollIndicatorBar {
            onPressedChanged: list.follow(pressed)
        }

        onHeightChanged: Qt.callLater(keepInSight) // qmllint disable type
        onContentHeightChanged: Qt.callLater(keepInSight) // qmllint disable type
        onMovementStarted: follow(true)
        onMovementEnded: follow(false)

        delegate: SidebarEntry {
            id: entry

            width: ListView.view.width
            viewModels: root.viewModels
            isSelected: isDestination && tab === root.appState.selectedTab

            onIsSelectedChanged: {
                if (isSelected)
                    list.choose(index);
            }
            Component.onCompleted: {
                if (isSelected)
                    list.choose(index);
            }
            onChosen: root.appState.selectedTab = tab

            Keys.onUpPressed: root.selectNeighbour(index, -1)
            Keys.onDownPressed: root.selectNeighbour(index, 1)
        }
    }
}
