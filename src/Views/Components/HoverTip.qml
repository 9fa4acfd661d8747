pragma ComponentBehavior: Bound

import QtQuick
import Quillmere

/// Makes a tooltip for its parent when it is wanted, and none before.
Loader {
    id: root

    property string text
    property bool shown: false

    anchors.fill: parent
    active: shown && text !== ""
    sourceComponent: Tooltip {
        text: root.text
        visible: true
    }
}
