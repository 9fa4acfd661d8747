import QtQuick
import Quillmere

/// Makes a tooltip for its parent when it is wanted, and none before.
Item {
    id: root

    property string text
    property bool shown: false

    readonly property bool wanted: shown && text !== ""
    readonly property Component maker: Component {
        Tooltip {}
    }
    property Tooltip tip: null

    anchors.fill: parent

    onWantedChanged: {
        if (wanted) {
            tip = maker.createObject(root, {text: root.text}) as Tooltip;
            tip.open();
        } else if (tip !== null) {
            tip.destroy();
            tip = null;
        }
    }
}
