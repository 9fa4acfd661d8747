import QtQuick
import Quillmere

/// What can be hit of a small control: at least 36 by 36 around its middle, whatever is drawn.
Item {
    anchors.centerIn: parent
    width: Math.max(parent.width, Theme.smallestHitArea)
    height: Math.max(parent.height, Theme.smallestHitArea)
}
