pragma ComponentBehavior: Bound

import QtQuick
import Quillmere
import Quillmere.Support

/// The wizard's left column: the program's logo and name, what the step is about, and how far the wizard has come.
Item {
    id: root

    property string logoFile
    property string subtitle
    property string spokenStep
    property int step: 1

    readonly property int radius: 20
    readonly property int rippleY: 128

    GradientSurface {
        anchors.fill: parent
        radius: root.radius
        start: Theme.promotionTop
        middle: Theme.promotionMiddle
        end: Theme.wizardBottom
        middlePosition: 0.6
    }

    // The corners that lie inside the card are square.
    Rectangle {
        x: root.width - width
        width: root.radius
        height: root.radius
        color: Theme.promotionTop
    }

    Rectangle {
        x: root.width - width
        y: root.height - height
        width: root.radius
        height: root.radius
        color: Theme.wizardBottom
    }

    Repeater {
        model: [{side: 112, opacity: 0.22}, {side: 160, opacity: 0.12}]

        Rectangle {
            required property var modelData

            x: (root.width - width) / 2
            y: root.rippleY - height / 2
            width: modelData.side
            height: width
            radius: width / 2
            color: "transparent"
            border.width: 1
            border.color: Theme.tint(Theme.fillText, modelData.opacity)
        }
    }

    Image {
        x: (root.width - width) / 2
        y: root.rippleY - height / 2
        width: 80
        height: 80
        source: ApplicationIcons.source(root.logoFile, "Quillmere")
        sourceSize.width: Math.ceil(width * Screen.devicePixelRatio)
        sourceSize.height: Math.ceil(height * Screen.devicePixelRatio)
        fillMode: Image.PreserveAspectFit
        smooth: true

        Accessible.ignored: true
    }

    SheetTitleText {
        y: 230
        width: root.width
        text: "Quillmere"
        size: 22
        color: Theme.fillText
        horizontalAlignment: Text.AlignHCenter
    }

    BodyText {
        x: 18
        y: 264
        width: root.width - 36
        text: root.subtitle
        color: Theme.promotionNote
        lineHeight: 18
        lineHeightMode: Text.FixedHeight
        wrapMode: Text.Wrap
        horizontalAlignment: Text.AlignHCenter
    }

    Row {
        anchors.horizontalCenter: parent.horizontalCenter
        anchors.bottom: parent.bottom
        anchors.bottomMargin: 28
        spacing: 7

        Accessible.role: Accessible.StaticText
        Accessible.name: root.spokenStep

        Repeater {
            model: 5

            Rectangle {
                required property int index

                width: index + 1 === root.step ? 20 : 7
                height: 7
                radius: 3.5
                color: Theme.tint(Theme.fillText, index + 1 === root.step ? 1 : 0.33)

                Behavior on width {
                    NumberAnimation {
                        duration: Theme.knobDuration
                    }
                }
            }
        }
    }
}
