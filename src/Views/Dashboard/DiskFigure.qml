import QtQuick
import Quillmere

/// A part of the disk: the key to its colour in the bar, its name and its size.
Item {
    id: root

    property string title
    property string sizeText
    property color color
    property bool outlined: false

    implicitHeight: figure.y + figure.height
    height: implicitHeight

    Accessible.role: Accessible.StaticText
    Accessible.name: title + ": " + sizeText

    Rectangle {
        y: (caption.height - height) / 2
        width: 9
        height: 9
        radius: 4.5
        color: root.color
        border.width: root.outlined ? 1 : 0
        border.color: Theme.textTertiary
    }

    ElidingText {
        id: caption

        x: 17
        width: parent.width - x
        text: root.title
        size: 12
        color: Theme.textSecondary

        Accessible.ignored: true
    }

    Figure {
        id: figure

        y: caption.height + 3
        text: root.sizeText
        size: 18
        weight: Font.DemiBold

        Accessible.ignored: true
    }
}
