import QtQuick
import QtQuick.Templates as T
import Quillmere

/// A short explanation under the control it speaks of, after half a second.
T.ToolTip {
    id: root

    readonly property int widest: 360

    x: parent ? Math.round((parent.width - width) / 2) : 0
    y: parent ? parent.height + 8 : 0
    implicitWidth: Math.min(widest, implicitContentWidth + leftPadding + rightPadding)
    implicitHeight: Math.max(30, implicitContentHeight + topPadding + bottomPadding)
    margins: 8
    leftPadding: 11
    rightPadding: 11
    topPadding: 6
    bottomPadding: 6
    delay: Theme.tooltipDelay
    closePolicy: T.Popup.CloseOnEscape | T.Popup.CloseOnPressOutsideParent | T.Popup.CloseOnReleaseOutsideParent

    enter: Transition {
        NumberAnimation {
            property: "opacity"
            from: 0
            to: 1
            duration: Theme.colorDuration
        }
    }

    background: Item {
        Elevation {
            anchors.fill: parent
            level: Elevation.Floating
            radius: 8
        }

        Rectangle {
            anchors.fill: parent
            radius: 8
            color: Theme.tooltip
        }
    }

    contentItem: BodyText {
        size: 12
        weight: Font.Medium
        color: Theme.tooltipText
        text: root.text
        wrapMode: Text.Wrap
    }
}
