import QtQuick
import Quillmere

/// A sample with its name below.
Column {
    id: root

    property string label
    default property alias content: slot.data

    spacing: 6

    Item {
        id: slot

        anchors.horizontalCenter: parent.horizontalCenter
        width: childrenRect.width
        height: 40
    }

    SectionText {
        anchors.horizontalCenter: parent.horizontalCenter
        text: root.label
        weight: Font.Medium
    }
}
