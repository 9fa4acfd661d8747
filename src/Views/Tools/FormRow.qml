import QtQuick
import Quillmere

/// A control of a form with its label at the left; above it where the row is narrow.
Item {
    id: root

    property string label
    default property Item control

    readonly property int labelWidth: 130
    readonly property bool isNarrow: width < 440

    implicitHeight: isNarrow ? caption.height + 6 + control.height : Math.max(caption.height, control.height)

    CaptionText {
        id: caption

        width: root.isNarrow ? root.width : root.labelWidth - 10
        height: root.isNarrow ? implicitHeight : Math.max(implicitHeight, root.control.height)
        text: root.label
        wrapMode: Text.Wrap
    }

    Item {
        x: root.isNarrow ? 0 : root.labelWidth
        y: root.isNarrow ? caption.height + 6 : 0
        width: root.width - x
        height: root.control.height
        children: [root.control]
    }
}
