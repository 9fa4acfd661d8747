pragma ComponentBehavior: Bound

import QtQuick
import Quillmere

/// The inset box of an open row: names with their sizes, and how many more there are.
Rectangle {
    id: root

    /// A list of {name, size}.
    property var items: []
    property string moreText

    implicitHeight: column.implicitHeight + 14
    radius: Theme.rowRadius
    color: Theme.inset

    Column {
        id: column

        x: 14
        y: 7
        width: root.width - 28

        Repeater {
            model: root.items

            Item {
                id: line

                required property var modelData

                width: column.width
                height: 28

                ElidingText {
                    width: parent.width - sizeFigure.width - 16
                    height: parent.height
                    text: line.modelData.name
                    size: 12
                    elide: Text.ElideMiddle
                }

                Figure {
                    id: sizeFigure

                    anchors.right: parent.right
                    anchors.verticalCenter: parent.verticalCenter
                    text: line.modelData.size
                    size: 12
                    color: Theme.textSecondary
                }
            }
        }

        CaptionText {
            height: 28
            visible: text !== ""
            text: root.moreText
            color: Theme.textTertiary
        }
    }
}
