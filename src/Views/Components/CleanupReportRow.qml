import QtQuick
import Quillmere

/// One figure of a cleanup's report.
Item {
    id: root

    property string label
    property string figure
    property bool prominent: false
    property bool last: false

    implicitHeight: 44

    Accessible.role: Accessible.StaticText
    Accessible.name: label + ": " + figure

    BodyText {
        anchors.verticalCenter: parent.verticalCenter
        width: parent.width - value.width - 16
        text: root.label
        color: Theme.textSecondary
        wrapMode: Text.Wrap

        Accessible.ignored: true
    }

    Figure {
        id: value

        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        text: root.figure
        size: root.prominent ? 22 : 15
        weight: root.prominent ? Font.Bold : Font.DemiBold
        color: root.prominent ? Theme.greenText : Theme.text

        Accessible.ignored: true
    }

    Divider {
        anchors.bottom: parent.bottom
        width: parent.width
        visible: !root.last
    }
}
