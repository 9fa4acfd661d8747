import QtQuick
import Quillmere

/// A symbol on a soft square of its own colour.
Rectangle {
    id: root

    property string symbol
    property color symbolColor: Theme.accent
    property int side: 38
    property int symbolSize: 20

    width: side
    height: side
    implicitWidth: side
    implicitHeight: side
    radius: Theme.tileRadius
    color: Theme.tint(symbolColor, Theme.dark ? 0.18 : 0.10)

    Symbol {
        anchors.centerIn: parent
        name: root.symbol
        color: root.symbolColor
        size: root.symbolSize
    }
}
