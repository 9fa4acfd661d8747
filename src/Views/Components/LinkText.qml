import QtQuick
import Quillmere

/// A plain underlined text that is pressed like a button, for what leads elsewhere.
PressableControl {
    id: root

    property int textSize: 12

    padding: 2

    contentItem: BodyText {
        text: root.text
        size: root.textSize
        color: root.down ? Qt.darker(Theme.accent, 1.2) : Theme.accent
        font.underline: true
        wrapMode: Text.Wrap
        horizontalAlignment: Text.AlignHCenter

        Accessible.ignored: true
    }

    background: Item {
        FocusRing {
            shown: root.visualFocus
            controlRadius: 4
        }
    }
}
