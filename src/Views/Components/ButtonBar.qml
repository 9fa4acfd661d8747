import QtQuick
import Quillmere

/// The bar of buttons along the foot of a screen: a group at the left, the primary one at the right. Where they no
/// longer fit beside each other, they stand in a column.
Rectangle {
    id: root

    /// The buttons at the left.
    default property alias leading: leadingSlot.data
    /// The primary button.
    property alias trailing: trailingSlot.data

    readonly property real room: width - 2 * Theme.screenMargin
    readonly property bool stacked: leadingSlot.naturalWidth + trailingSlot.childrenRect.width + 16 > room

    implicitHeight: stacked ? leadingSlot.height + trailingSlot.height + 34 : Theme.buttonBarHeight
    color: Theme.bar

    Rectangle {
        width: parent.width
        height: 1
        color: Theme.cardBorder
    }

    Flow {
        id: leadingSlot

        readonly property real naturalWidth: {
            let sum = 0;
            for (let i = 0; i < children.length; ++i)
                sum += children[i].visible ? children[i].width + (i > 0 ? spacing : 0) : 0;
            return sum;
        }

        x: Theme.screenMargin
        y: root.stacked ? 12 : (root.height - height) / 2
        width: root.stacked ? root.room : naturalWidth + 1
        spacing: 10
    }

    Item {
        id: trailingSlot

        x: root.stacked ? Theme.screenMargin : root.width - Theme.screenMargin - width
        y: root.stacked ? leadingSlot.height + 22 : (root.height - height) / 2
        width: childrenRect.width
        height: childrenRect.height
    }
}
