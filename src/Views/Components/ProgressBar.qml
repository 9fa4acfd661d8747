import QtQuick
import Quillmere

/// A bar that fills from `start` to `end` colour. `value` runs from 0 to 1.
Rectangle {
    id: root

    property real value: 0
    property color start: Theme.accentFill
    property color end: Theme.progressEnd
    property bool easing: true
    /// It shows how far runs are, which never go back: a value that falls is of a new run, and shown at once.
    property bool forwardOnly: false
    /// What runs, for assistive tools; they hear the percentage after it.
    property string accessibleName

    readonly property real shownValue: Math.max(0, Math.min(1, value))

    implicitWidth: 300
    implicitHeight: 8
    radius: height / 2
    color: Theme.track

    Accessible.role: Accessible.ProgressBar
    Accessible.name: (accessibleName === "" ? "" : accessibleName + ", ") + Math.round(shownValue * 100) + "%"

    GradientSurface {
        id: fill

        width: root.shownValue === 0 ? 0 : Math.max(root.height, Math.round(root.width * root.shownValue))
        height: root.height
        visible: width > 0
        horizontal: true
        radius: root.height / 2
        start: root.start
        end: root.end

        Behavior on width {
            id: growth

            enabled: root.easing && root.width > 0

            NumberAnimation {
                duration: root.forwardOnly && growth.targetValue < fill.width ? 0 : Theme.barDuration
                easing.type: Easing.OutCubic
            }
        }
    }
}
