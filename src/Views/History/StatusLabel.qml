import QtQuick
import Quillmere

/// How an operation ended: a dot in its colour and the word.
Item {
    id: root

    property string text
    property color color: Theme.textSecondary

    Rectangle {
        width: 8
        height: 8
        radius: 4
        anchors.verticalCenter: parent.verticalCenter
        color: root.color
    }

    ElidingText {
        x: 16
        width: parent.width - x
        height: parent.height
        text: root.text
        weight: Font.Medium
        color: root.color
    }
}
