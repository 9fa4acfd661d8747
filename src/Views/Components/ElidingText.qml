import QtQuick
import Quillmere

/// Text that may be too long for its place. What is cut can be read whole in a tooltip.
BodyText {
    id: root

    elide: Text.ElideRight

    HoverHandler {
        id: pointer

        enabled: root.truncated
    }

    HoverTip {
        text: root.text
        shown: pointer.hovered && root.truncated
    }
}
