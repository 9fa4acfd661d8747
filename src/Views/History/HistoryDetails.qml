pragma ComponentBehavior: Bound

import QtQuick
import Quillmere

/// What a run did: counts, the categories it touched, and its failures.
Rectangle {
    id: root

    property string removedText
    property string skippedText
    property string categoriesText
    property var errors: []

    height: lines.height + 24
    radius: Theme.rowRadius
    color: Theme.inset

    component Line: BodyText {
        width: lines.width
        visible: text !== ""
        size: 12
        color: Theme.textSecondary
        wrapMode: Text.Wrap
    }

    Column {
        id: lines

        x: 14
        y: 12
        width: parent.width - 28
        spacing: 6

        Line {
            text: Texts.localized("history.details")
            weight: Font.Bold
            color: Theme.text
        }

        Line {
            text: root.removedText
        }

        Line {
            text: root.skippedText
        }

        Line {
            text: root.categoriesText
        }

        Line {
            visible: root.errors.length > 0
            text: Texts.localized("history.errors")
            weight: Font.DemiBold
            color: Theme.redText
        }

        Repeater {
            model: root.errors

            Line {
                required property string modelData

                text: modelData
            }
        }
    }
}
