import QtQuick

/// A rounded surface that runs from one colour to another. A flat rounded cap stands at each end and a square gradient
/// between them, because the software renderer draws rounded gradients with rough edges.
Item {
    id: root

    property color start
    property color end
    property color middle: Qt.rgba((start.r + end.r) / 2, (start.g + end.g) / 2, (start.b + end.b) / 2, 1)
    property real middlePosition: 0.5
    property bool horizontal: false
    property real radius: 9

    readonly property real cap: Math.min(2 * radius, horizontal ? width : height)

    Rectangle {
        width: root.horizontal ? root.cap : root.width
        height: root.horizontal ? root.height : root.cap
        radius: root.radius
        color: root.start
    }

    Rectangle {
        anchors.right: parent.right
        anchors.bottom: parent.bottom
        width: root.horizontal ? root.cap : root.width
        height: root.horizontal ? root.height : root.cap
        radius: root.radius
        color: root.end
    }

    Rectangle {
        x: root.horizontal ? root.radius : 0
        y: root.horizontal ? 0 : root.radius
        width: root.horizontal ? root.width - 2 * root.radius : root.width
        height: root.horizontal ? root.height : root.height - 2 * root.radius
        visible: width > 0 && height > 0
        antialiasing: false
        gradient: Gradient {
            orientation: root.horizontal ? Gradient.Horizontal : Gradient.Vertical

            GradientStop {
                position: 0
                color: root.start
            }
            GradientStop {
                position: root.middlePosition
                color: root.middle
            }
            GradientStop {
                position: 1
                color: root.end
            }
        }
    }
}
