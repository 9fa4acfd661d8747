pragma ComponentBehavior: Bound

import QtQuick
import Quillmere

/// The parts of a volume side by side, each as wide as its share. They grow in together. Tab comes to one of them, and
/// the arrow keys lead from there to the others.
Item {
    id: root

    required property SystemCategoryListModel items
    /// The row that is pointed at elsewhere; its part is marked. -1 for none.
    property int markedRow: -1
    /// The row whose part the pointer or the keyboard is on. -1 for none.
    property int pointedRow: -1
    /// The part that Tab comes to.
    property int currentRow: 0
    property real shownShare: 1

    implicitHeight: 24

    function grow() {
        growth.stop();
        currentRow = nearest(0, 1);
        if (Theme.reducedMotion)
            shownShare = 1;
        else
            growth.start();
    }

    /// The first part from @p row on that is drawn, going by @p step. -1 when there is none.
    function nearest(row: int, step: int): int {
        for (let at = row; at >= 0 && at < parts.count; at += step) {
            if ((parts.itemAt(at) as StorageSegment).fraction > 0)
                return at;
        }
        return -1;
    }

    function goTo(row: int) {
        if (row < 0)
            return;
        parts.itemAt(row).forceActiveFocus(Qt.TabFocusReason);
        currentRow = row;
    }

    Accessible.role: Accessible.Chart

    NumberAnimation {
        id: growth

        target: root
        property: "shownShare"
        from: 0
        to: 1
        duration: Theme.barDuration * 2
        easing.type: Easing.OutCubic
    }

    Rectangle {
        anchors.fill: parent
        visible: parts.count === 0
        radius: 6
        color: Theme.track
    }

    // More than the whole is drawn as far as there is room, with the ring of the keyboard around it.
    Item {
        x: -4
        y: -4
        width: parent.width + 8
        height: parent.height + 8
        clip: true

        Row {
            x: 4
            y: 4

            Repeater {
                id: parts

                model: root.items

                onCountChanged: {
                    if (count > 0)
                        root.grow();
                }

                StorageSegment {
                    required property int index

                    width: fraction * root.width * root.shownShare
                    height: root.height
                    marked: root.markedRow === index
                    activeFocusOnTab: root.currentRow === index

                    onPointed: isPointed => {
                        if (isPointed)
                            root.pointedRow = index;
                        else if (root.pointedRow === index)
                            root.pointedRow = -1;
                    }

                    Keys.onLeftPressed: root.goTo(root.nearest(index - 1, -1))
                    Keys.onRightPressed: root.goTo(root.nearest(index + 1, 1))
                    Keys.onPressed: event => {
                        if (event.key === Qt.Key_Home)
                            root.goTo(root.nearest(0, 1));
                        else if (event.key === Qt.Key_End)
                            root.goTo(root.nearest(parts.count - 1, -1));
                        else
                            return;
                        event.accepted = true;
                    }
                }
            }
        }
    }
}
