import QtQuick
import Quillmere

/// A load as a figure of a hundred and as a bar. What is known beyond stands behind the title or, where the room is
/// short, below the bar.
Item {
    id: root

    property string title
    property string info
    property string valueText
    property real value: 0
    property int level: LoadLevel.Normal

    readonly property string outOf: "/ 100%"
    readonly property bool fits: caption.implicitWidth + 8 + infoFigure.implicitWidth + 12 <= figure.x
    readonly property color color: [Theme.green, Theme.orange, Theme.red][level]

    implicitHeight: bar.y + bar.height + (info !== "" && !fits ? 6 + infoFigure.implicitHeight : 0)

    Accessible.role: Accessible.StaticText
    Accessible.name: title + (info === "" ? ", " : ", " + info + ", ") + valueText + " " + outOf

    ElidingText {
        id: caption

        y: 3
        width: Math.min(implicitWidth, figure.x - 12)
        text: root.title
        weight: Font.Medium
        color: Theme.textSecondary

        Accessible.ignored: true
    }

    Figure {
        id: infoFigure

        x: root.fits ? caption.x + caption.width + 8 : 0
        y: root.fits ? caption.y + (caption.height - height) / 2 : bar.y + bar.height + 6
        visible: root.info !== ""
        text: root.info
        size: 12
        weight: Font.Normal
        color: Theme.textTertiary

        Accessible.ignored: true
    }

    Figure {
        id: figure

        x: hundred.x - width - 5
        text: root.valueText
        size: 18
        weight: Font.DemiBold

        Accessible.ignored: true
    }

    CaptionText {
        id: hundred

        x: root.width - implicitWidth
        y: figure.y + figure.height - height - 2
        text: root.outOf
        color: Theme.textTertiary

        Accessible.ignored: true
    }

    ProgressBar {
        id: bar

        y: 30
        width: root.width
        value: root.value
        start: root.color
        end: root.color

        Accessible.ignored: true
    }
}
