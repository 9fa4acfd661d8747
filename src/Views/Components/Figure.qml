pragma ComponentBehavior: Bound

import QtQuick
import Quillmere

/// A size, percentage or count. Every digit stands in a cell as wide as "0", so that figures neither jump nor ragged
/// their column. Never elided or wrapped.
Item {
    id: root

    property string text
    property int size: 13
    property int weight: Font.Medium
    property color color: Theme.text

    readonly property string family: Theme.familyFor(size)

    implicitWidth: cells.implicitWidth
    implicitHeight: cells.implicitHeight

    Accessible.role: Accessible.StaticText
    Accessible.name: text

    TextMetrics {
        id: zeros

        // Ten at once, because the advance of one is rounded.
        text: "0000000000"
        font.family: root.family
        font.pixelSize: root.size
        font.weight: root.weight
    }

    Row {
        id: cells

        Repeater {
            model: root.text.match(/[0-9]|[^0-9]+/g)

            Text {
                required property string modelData

                width: modelData >= "0" && modelData <= "9" ? zeros.advanceWidth / 10 : implicitWidth
                horizontalAlignment: Text.AlignHCenter
                text: modelData
                textFormat: Text.PlainText
                color: root.color
                font.family: root.family
                font.pixelSize: root.size
                font.weight: root.weight
            }
        }
    }
}
