pragma ComponentBehavior: Bound

import QtQuick
import Quillmere

/// A soft shadow out of plain rounded rectangles, to stand behind a surface of the same size.
Item {
    id: root

    enum Level { Card, Control, Floating, Sheet, Overlay }

    property int level: Elevation.Card
    property real radius: Theme.cardRadius

    readonly property int layers: [4, 3, 6, 10, 10][level]
    readonly property real step: [1.5, 1.2, 1.6, 2.6, 2.6][level]
    readonly property real offset: [1, 1.5, 3, 10, 10][level]
    // An overlay's layers add up to an opacity of 0.4 where all of them lie.
    readonly property real strength: level === Elevation.Overlay
        ? 0.05 : [0.010, 0.028, 0.022, 0.018][level] * Theme.shadowStrength

    Repeater {
        model: root.layers

        Rectangle {
            required property int index
            readonly property real growth: (index + 0.5) * root.step

            x: -growth
            y: root.offset - growth
            width: root.width + 2 * growth
            height: root.height + 2 * growth
            radius: root.radius + growth
            color: Theme.tint(Theme.shadow, root.strength)
        }
    }
}
