pragma ComponentBehavior: Bound

import QtQuick
import Quillmere

/// How many steps there are, and how many have been reached.
Row {
    id: root

    property int count: 0
    property int filled: 0
    property color color: Theme.accentFill

    topPadding: 14
    spacing: 5

    Accessible.ignored: true

    Repeater {
        model: root.count

        Rectangle {
            required property int index

            width: 26
            height: 4
            radius: 2
            color: index < root.filled ? root.color : Theme.track
        }
    }
}
