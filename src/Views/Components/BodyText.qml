import QtQuick
import Quillmere

/// Text as the screens set it: 13 pixels, ink, plain text. The kinds below it change size, weight and colour.
Text {
    id: root

    property int size: 13
    property int weight: Font.Normal

    color: Theme.text
    font.family: Theme.familyFor(size)
    font.pixelSize: size
    font.weight: weight
    textFormat: Text.PlainText
    verticalAlignment: Text.AlignVCenter

    Accessible.role: Accessible.StaticText
    Accessible.name: text
}
