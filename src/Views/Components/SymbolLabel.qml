import QtQuick
import Quillmere

/// A symbol and a text beside it, together in the middle of the item. The text wraps where the room is short.
Item {
    id: root

    property string text
    property string symbol
    property int symbolSize: 16
    property int textSize: 13
    property int gap: 8
    property int weight: Font.DemiBold
    property color color: Theme.text
    property color symbolColor: color

    readonly property real lead: symbol === "" ? 0 : symbolSize + (text === "" ? 0 : gap)

    // Not the text's own implicit width, which is told anew whenever the text is laid out.
    readonly property real textWidth: text === "" ? 0 : Math.ceil(metrics.advanceWidth) + 1

    implicitWidth: lead + textWidth
    implicitHeight: Math.max(symbol === "" ? 0 : symbolSize, text === "" ? 0 : label.implicitHeight)

    TextMetrics {
        id: metrics

        text: root.text
        font: label.font
    }

    Item {
        anchors.centerIn: parent
        width: root.lead + label.width
        height: parent.height

        Symbol {
            anchors.verticalCenter: parent.verticalCenter
            visible: root.symbol !== ""
            name: root.symbol
            size: root.symbolSize
            color: root.symbolColor
        }

        BodyText {
            id: label

            x: root.lead
            width: Math.min(root.textWidth, Math.max(0, root.width - root.lead))
            anchors.verticalCenter: parent.verticalCenter
            text: root.text
            size: root.textSize
            weight: root.weight
            color: root.color
            wrapMode: Text.Wrap
            horizontalAlignment: Text.AlignHCenter

            Accessible.ignored: true
        }
    }
}
