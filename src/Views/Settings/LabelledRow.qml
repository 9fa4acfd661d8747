import QtQuick
import Quillmere

/// A label at the left and a control at the right; below one another where they do not fit side by side.
Item {
    id: root

    property string text
    default property alias control: slot.data

    readonly property bool isStacked: label.implicitWidth + slot.childrenRect.width + 24 > width

    implicitHeight: isStacked ? label.height + 8 + slot.height : Math.max(36, slot.height, label.height)

    BodyText {
        id: label

        y: root.isStacked ? 0 : (root.height - height) / 2
        width: root.isStacked ? root.width : root.width - slot.width - 24
        text: root.text
        wrapMode: Text.Wrap

        Accessible.ignored: true
    }

    Item {
        id: slot

        x: root.isStacked ? 0 : root.width - width
        y: root.isStacked ? label.height + 8 : (root.height - height) / 2
        width: childrenRect.width
        height: childrenRect.height
    }
}
