pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Quillmere

/// One of a few choices, all in sight. It asks by `picked` and stands as `currentIndex` says. One stop for Tab; the
/// arrow keys move the choice.
T.Control {
    id: root

    property var model: []
    property int currentIndex: 0
    property string accessibleName
    /// Where the room is short, the segments stand in several lines; otherwise their texts do.
    property bool wraps: false

    signal picked(int index)

    /// With the choice, since the arrow keys move that and not the keyboard.
    readonly property string spokenName: {
        const chosen = model[currentIndex] ?? "";
        if (accessibleName === "" || chosen === "")
            return accessibleName + chosen;
        return accessibleName + (accessibleName.endsWith(":") ? " " : ", ") + chosen;
    }
    readonly property real naturalWidth: {
        let sum = 6;
        for (let i = 0; i < segments.count; ++i)
            sum += segments.itemAt(i) ? segments.itemAt(i).implicitContentWidth + 26 : 0;
        return sum;
    }
    readonly property bool isWrapped: wraps && width < naturalWidth
    /// Room that each segment gets beyond, or lacks to, its own width.
    readonly property real surplus: segments.count > 0 && !isWrapped ? (width - naturalWidth) / segments.count : 0

    function move(step: int) {
        const next = currentIndex + step;
        if (next >= 0 && next < segments.count)
            picked(next);
    }

    implicitWidth: naturalWidth
    implicitHeight: Math.max(32, isWrapped ? row.implicitHeight + 6 : row.tallest + 6)
    focusPolicy: Qt.TabFocus

    Accessible.role: Accessible.Grouping
    Accessible.name: spokenName

    Keys.onLeftPressed: move(-1)
    Keys.onRightPressed: move(1)

    background: Rectangle {
        radius: Theme.controlRadius
        color: Theme.well
        border.width: Theme.dark ? 1 : 0
        border.color: Theme.cardBorder

        FocusRing {
            shown: root.visualFocus
        }
    }

    Flow {
        id: row

        readonly property real tallest: {
            let height = 26;
            for (let i = 0; i < segments.count; ++i)
                height = Math.max(height, segments.itemAt(i) ? segments.itemAt(i).implicitHeight : 0);
            return height;
        }

        x: 3
        y: 3
        // One more than there is, or what fits exactly might not.
        width: root.width - 5

        Repeater {
            id: segments

            model: root.model

            // A radio button for its role; not checkable, so that the owner's index alone decides.
            T.RadioButton {
                id: segment

                required property int index
                required property string modelData
                readonly property bool chosen: index === root.currentIndex

                implicitHeight: implicitContentHeight + 8
                width: Math.max(24, implicitContentWidth + 26 + root.surplus)
                height: root.isWrapped ? row.tallest : root.height - 6
                leftPadding: 6
                rightPadding: 6
                focusPolicy: Qt.NoFocus
                checkable: false
                hoverEnabled: true
                text: modelData

                Accessible.name: modelData
                Accessible.checkable: true
                Accessible.checked: chosen
                Accessible.onPressAction: {
                    if (segment.enabled)
                        segment.clicked();
                }

                onClicked: root.picked(index)

                background: Item {
                    Elevation {
                        anchors.fill: parent
                        visible: segment.chosen && segment.enabled
                        level: Elevation.Control
                        radius: 7
                    }

                    Rectangle {
                        anchors.fill: parent
                        visible: segment.chosen || segment.hovered
                        radius: 7
                        color: segment.chosen ? Theme.segment : Theme.tint(Theme.text, 0.05)
                    }
                }

                contentItem: SymbolLabel {
                    text: segment.text
                    weight: segment.chosen ? Font.DemiBold : Font.Medium
                    color: !segment.enabled ? Theme.tint(Theme.textTertiary, 0.75)
                                            : segment.chosen ? Theme.text : Theme.textSecondary
                }
            }
        }
    }
}
