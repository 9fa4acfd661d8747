import QtQuick
import QtQuick.Templates as T
import Quillmere

/// A thin scroll bar that lies over what it scrolls.
T.ScrollBar {
    id: root

    implicitWidth: 12
    implicitHeight: 12
    padding: 3
    minimumSize: 0.06
    visible: size < 1
    policy: T.ScrollBar.AsNeeded

    Accessible.ignored: true

    contentItem: Rectangle {
        radius: 3
        color: Theme.tint(Theme.text, root.pressed ? 0.42 : root.hovered ? 0.32 : 0.20)

        Behavior on color {
            ColorAnimation {
                duration: Theme.colorDuration
            }
        }
    }
}
