pragma ComponentBehavior: Bound

import QtQuick
import Quillmere

/// A low sun over still water.
GradientSurface {
    id: root

    /// Off where text stands in the place of the sun.
    property bool shining: true

    radius: Theme.promotionRadius
    start: Theme.promotionTop
    middle: Theme.promotionMiddle
    end: Theme.promotionBottom
    middlePosition: 0.6

    Repeater {
        model: [{side: 62, opacity: 0.13}, {side: 48, opacity: 0.20}, {side: 34, opacity: 1}]

        Rectangle {
            required property var modelData

            visible: root.shining
            x: root.width - 40 - width / 2
            y: 39 - height / 2
            width: modelData.side
            height: width
            radius: width / 2
            color: Theme.tint(Theme.sun, modelData.opacity)
        }
    }

    Repeater {
        model: [{length: 42, opacity: 0.50}, {length: 26, opacity: 0.36}, {length: 14, opacity: 0.22}]

        Rectangle {
            required property int index
            required property var modelData

            visible: root.shining
            x: root.width - 40 - width / 2
            y: 70 + 5 * index
            width: modelData.length
            height: 2
            radius: 1
            color: Theme.tint(Theme.sun, modelData.opacity)
        }
    }
}
