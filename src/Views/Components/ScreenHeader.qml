import QtQuick
import Quillmere

/// The head of a screen: its title, and at the right what belongs to all of it. The window is dragged by it, and it
/// keeps clear of the window's own buttons.
Item {
    id: root

    property string title
    /// What stands right of the title, such as a figure.
    default property alias trailing: trailingSlot.data

    readonly property int windowButtonsRoom: 108

    implicitWidth: 600
    implicitHeight: Theme.firstCardY

    WindowDragArea {
        width: parent.width
        height: Theme.windowBarHeight
    }

    TitleText {
        id: titleText

        x: Theme.screenMargin
        y: Theme.titleY
        width: trailingSlot.x - x - 16
        height: 34
        text: root.title
        fontSizeMode: Text.HorizontalFit
        minimumPixelSize: 20
    }

    Row {
        id: trailingSlot

        anchors.right: parent.right
        anchors.rightMargin: Theme.screenMargin + root.windowButtonsRoom
        y: Theme.titleY + (34 - height) / 2
        spacing: 8
    }
}
