import QtQuick
import Quillmere

/// A large figure with the word that says what it is, for the head of a screen.
Row {
    id: root

    property string figure
    property string caption

    spacing: 6

    Accessible.role: Accessible.StaticText
    Accessible.name: figure + " " + caption

    Figure {
        id: number

        text: root.figure
        size: 22
        weight: Font.Bold
        color: Theme.accent
    }

    BodyText {
        y: number.height - height - 3
        text: root.caption
        color: Theme.textSecondary
    }
}
