import QtQuick
import Quillmere

/// One part of a volume: its colour and symbol as in the bar, its name, its size and its share.
Item {
    id: root

    required property string label
    required property int sliceColor
    required property string iconName
    required property string sizeText
    required property string percentageText

    property bool last: false
    property bool marked: false

    readonly property alias hovered: pointer.hovered
    readonly property int textX: 86

    implicitHeight: Math.max(52, name.implicitHeight + 20)

    Accessible.role: Accessible.ListItem
    Accessible.name: label + ", " + sizeText + ", " + percentageText

    HoverHandler {
        id: pointer
    }

    Rectangle {
        x: 8
        y: 2
        width: parent.width - 16
        height: parent.height - 4
        visible: root.marked
        radius: Theme.rowRadius
        color: Theme.hover
    }

    Rectangle {
        x: 20
        anchors.verticalCenter: parent.verticalCenter
        width: 12
        height: 12
        radius: 6
        color: Theme.slices[root.sliceColor]
    }

    Symbol {
        x: 50
        anchors.verticalCenter: parent.verticalCenter
        name: root.iconName
        size: 20
        color: Theme.textSecondary
    }

    HeadingText {
        id: name

        x: root.textX
        anchors.verticalCenter: parent.verticalCenter
        width: size.x - x - 16
        text: root.label
        weight: Font.Medium
        wrapMode: Text.Wrap

        Accessible.ignored: true
    }

    Figure {
        id: size

        x: root.width - 110 - width
        anchors.verticalCenter: parent.verticalCenter
        text: root.sizeText
        size: 14
        weight: Font.DemiBold

        Accessible.ignored: true
    }

    Figure {
        x: root.width - 22 - width
        anchors.verticalCenter: parent.verticalCenter
        text: root.percentageText
        color: Theme.textSecondary

        Accessible.ignored: true
    }

    Divider {
        x: root.textX
        y: parent.height - 1
        width: parent.width - x - Theme.cardPadding
        visible: !root.last && !root.marked
    }
}
