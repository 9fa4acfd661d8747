pragma ComponentBehavior: Bound

import QtQuick
import Quillmere

/// The first failures of a cleanup, each on a line.
Item {
    id: root

    property var errors: []

    implicitHeight: box.height + 8

    Rectangle {
        id: box

        y: 8
        width: parent.width
        height: lines.height + 20
        radius: Theme.rowRadius
        color: Theme.tint(Theme.redText, 0.07)

        Column {
            id: lines

            x: 14
            y: 10
            width: parent.width - 28
            spacing: 4

            SymbolLabel {
                symbol: "exclamationmark.triangle"
                symbolSize: 16
                text: Texts.localized("cleanup.report.errors")
                color: Theme.redText
            }

            Repeater {
                model: root.errors

                ElidingText {
                    required property string modelData

                    width: lines.width
                    text: modelData
                    size: 12
                    color: Theme.textSecondary
                    elide: Text.ElideMiddle
                }
            }
        }
    }
}
