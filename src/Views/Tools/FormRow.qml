import QtQuick
import Quillmere

/// A control of a form with its label at the left; above it where the control is wide or the row narrow.
Item {
    id: root

    property string label
    property bool isWide: false
    default property Item control

    readonly property int labelWidth: 130
    readonly property bool isStacked: isWide || width < 440

    implicitHeight: isStacked ? caption.height + 6 + control.height : Math.max(caption.height, control.height)

    CaptionText {
        id: caption

        width: root.isStacked ? root.width : root.labelWidth - 10
        height: root.isStacked ? implicitHeight : Math.max(implicitHeight, root.control.height)
        text: root.label
        wrapMode: Text.Wrap
    }

    Item {
        x: root.isStacked ? 0 : root.labelWidth
        y: root.isStacked ? caption.height + 6 : 0
        width: root.width - x
        height: root.control.height
        children: [root.control]
    }
}
