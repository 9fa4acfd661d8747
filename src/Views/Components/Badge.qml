import QtQuick
import Quillmere

/// A state in a word, with its symbol, on its colour's own soft ground.
Rectangle {
    id: root

    property string text
    property string symbol
    property color tone: Theme.greenText

    implicitWidth: label.implicitWidth + 18
    implicitHeight: 22
    radius: height / 2
    color: Theme.tint(tone, 0.15)

    Accessible.role: Accessible.StaticText
    Accessible.name: text

    SymbolLabel {
        id: label

        x: 8
        anchors.verticalCenter: parent.verticalCenter
        width: implicitWidth
        text: root.text
        symbol: root.symbol
        symbolSize: 14
        textSize: 12
        gap: 4
        color: root.tone
    }
}
