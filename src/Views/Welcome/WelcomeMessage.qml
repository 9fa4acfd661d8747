import QtQuick
import Quillmere

/// A step that only tells something: its symbol, title and text.
Column {
    id: root

    property string symbol
    property color symbolColor: Theme.accent
    property string title
    property string message

    spacing: 12

    Rectangle {
        width: 52
        height: 52
        radius: 26
        color: Theme.tint(root.symbolColor, 0.12)

        Symbol {
            anchors.centerIn: parent
            name: root.symbol
            size: 26
            color: root.symbolColor
        }
    }

    SheetTitleText {
        width: root.width
        size: 22
        text: root.title
    }

    BodyText {
        width: root.width
        text: root.message
        color: Theme.textSecondary
        lineHeight: 20
        lineHeightMode: Text.FixedHeight
        wrapMode: Text.Wrap
    }
}
