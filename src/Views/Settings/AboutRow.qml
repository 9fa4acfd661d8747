import QtQuick
import Quillmere

/// One thing that is known of the program: what it is, and its value. Spoken as one.
Item {
    id: root

    property string label
    property string value

    readonly property int labelWidth: Math.min(190, width * 0.5)

    implicitHeight: Math.max(name.implicitHeight, answer.implicitHeight)

    Accessible.role: Accessible.StaticText
    Accessible.name: label + ": " + value

    BodyText {
        id: name

        width: root.labelWidth
        text: root.label
        color: Theme.textSecondary
        wrapMode: Text.Wrap

        Accessible.ignored: true
    }

    BodyText {
        id: answer

        x: root.labelWidth + 12
        width: root.width - x
        text: root.value
        weight: Font.Medium
        wrapMode: Text.Wrap

        Accessible.ignored: true
    }
}
