import QtQuick
import Quillmere

/// One figure of the traffic under its name.
Item {
    id: root

    property string title
    property string valueText
    property string symbol
    property color color: Theme.textTertiary

    implicitHeight: Math.max(44, texts.height)

    Accessible.role: Accessible.StaticText
    Accessible.name: title + ": " + valueText

    IconTile {
        id: tile

        anchors.verticalCenter: parent.verticalCenter
        side: 36
        symbolSize: 18
        symbol: root.symbol
        symbolColor: root.color
    }

    Column {
        id: texts

        x: 46
        anchors.verticalCenter: parent.verticalCenter
        width: parent.width - x
        spacing: 1

        ElidingText {
            width: parent.width
            text: root.title
            size: 12
            color: Theme.textSecondary

            Accessible.ignored: true
        }

        Figure {
            text: root.valueText
            size: 16
            weight: Font.DemiBold

            Accessible.ignored: true
        }
    }
}
