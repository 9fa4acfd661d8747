pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Quillmere

/// The applications, largest first. One stop for Tab; the arrow keys choose.
ListView {
    id: root

    required property ApplicationsViewModel viewModel

    function choose(row: int) {
        if (row < 0 || row >= count)
            return;
        viewModel.select(row);
        positionViewAtIndex(row, ListView.Contain);
        currentItem.forceActiveFocus(Qt.TabFocusReason);
    }

    topMargin: 6
    bottomMargin: 6
    clip: true
    boundsBehavior: Flickable.StopAtBounds
    model: viewModel.apps
    // The row that Tab leads to exists, wherever the list is scrolled.
    currentIndex: Math.max(0, viewModel.selectedRow)
    highlightFollowsCurrentItem: false
    keyNavigationEnabled: false

    Accessible.role: Accessible.List
    Accessible.name: Texts.localized("nav.applications")

    delegate: ApplicationRow {
        width: ListView.view.width
        isSelected: index === root.viewModel.selectedRow
        isTabStop: index === root.currentIndex

        onClicked: root.viewModel.select(index)

        Keys.onUpPressed: root.choose(index - 1)
        Keys.onDownPressed: root.choose(index + 1)
        Keys.onPressed: event => {
            if (event.key === Qt.Key_Home)
                root.choose(0);
            else if (event.key === Qt.Key_End)
                root.choose(root.count - 1);
        }
    }

    T.ScrollBar.vertical: ScrollIndicatorBar {}
}
