import QtQuick
import Quillmere

/// The ground of what lies above a screen: sheets, alerts, overlays.
Item {
    id: root

    property real radius: Theme.sheetRadius
    property int elevation: Elevation.Sheet

    Elevation {
        anchors.fill: parent
        level: root.elevation
        radius: root.radius
    }

    Rectangle {
        anchors.fill: parent
        radius: root.radius
        color: Theme.raised
        border.width: 1
        border.color: Theme.raisedBorder
    }
}
