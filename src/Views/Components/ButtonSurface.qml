import QtQuick
import Quillmere

/// The ground of a button: a filled gradient with its shadow, or a flat colour with or without a border.
Item {
    id: root

    property int kind: ActionButton.Quiet
    property bool hovered: false
    property bool down: false
    property real radius: Theme.controlRadius

    readonly property bool solid: kind === ActionButton.Primary || kind === ActionButton.Destructive
    readonly property bool destructive: kind === ActionButton.Destructive || kind === ActionButton.DestructiveQuiet
    readonly property color plainColor: {
        if (!enabled)
            return kind === ActionButton.Link ? "transparent" : Theme.track;
        switch (kind) {
        case ActionButton.Tinted:
            return Qt.darker(Theme.accentSoft, down ? 1.12 : hovered ? 1.05 : 1);
        case ActionButton.DestructiveQuiet:
            return Theme.tint(Theme.redText, down ? 0.16 : hovered ? 0.11 : 0.06);
        case ActionButton.Link:
            return Theme.tint(Theme.accent, down ? 0.14 : hovered ? 0.08 : 0);
        case ActionButton.On:
            return Theme.tint(Theme.greenText, down ? 0.27 : hovered ? 0.21 : 0.15);
        default:
            return down ? Theme.quietPressed : hovered ? Theme.quietHover : Theme.quiet;
        }
    }
    property real shade: !enabled ? 1 : down ? 1.24 : hovered ? 1.10 : 1

    Behavior on shade {
        NumberAnimation {
            duration: Theme.colorDuration
        }
    }

    Elevation {
        anchors.fill: parent
        visible: root.solid && root.enabled
        level: Elevation.Control
        radius: root.radius
    }

    GradientSurface {
        anchors.fill: parent
        visible: root.solid && root.enabled
        radius: root.radius
        start: Qt.darker(root.destructive ? Theme.destructiveTop : Theme.accentFillTop, root.shade)
        end: Qt.darker(root.destructive ? Theme.destructiveBottom : Theme.accentFill, root.shade)
    }

    Rectangle {
        anchors.fill: parent
        visible: !root.solid || !root.enabled
        radius: root.radius
        color: root.plainColor
        border.width: root.enabled && (root.kind === ActionButton.Quiet || root.kind === ActionButton.DestructiveQuiet)
                      ? 1 : 0
        border.color: root.destructive ? Theme.tint(Theme.redText, 0.35) : Theme.quietBorder

        Behavior on color {
            ColorAnimation {
                duration: Theme.colorDuration
            }
        }
    }
}
