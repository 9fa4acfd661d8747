import QtQuick
import Quillmere

/// The promotion in the sidebar. Without media of its own it shows the program's: a low sun over water.
PressableControl {
    id: root

    property string name: Texts.localized("promotion.name")
    property string slogan: Texts.localized("promotion.slogan")
    property string message: Texts.localized("promotion.text")
    property string help
    /// A picture or a movie in place of the drawn one.
    property alias media: mediaSlot.data

    readonly property bool drawn: mediaSlot.children.length === 0

    implicitWidth: 199
    implicitHeight: 126
    accessibleName: name + ". " + message

    background: PromotionDrawing {
        visible: root.drawn
    }

    contentItem: Item {
        visible: root.drawn

        BodyText {
            x: 12
            y: 10
            width: 116
            text: root.name
            size: 11
            weight: Font.DemiBold
            color: "#CFEDEF"
            elide: Text.ElideRight

            Accessible.ignored: true
        }

        BodyText {
            x: 12
            y: 25
            width: root.width - 82
            height: 56
            text: root.slogan
            size: 17
            weight: Font.ExtraBold
            color: Theme.fillText
            font.letterSpacing: 0.2
            fontSizeMode: Text.Fit
            minimumPixelSize: 11
            lineHeight: 18
            lineHeightMode: Text.FixedHeight
            verticalAlignment: Text.AlignTop

            Accessible.ignored: true
        }

        BodyText {
            x: 12
            y: 87
            width: root.width - 22
            text: root.message
            size: 11
            color: Theme.fillText
            lineHeight: 14
            lineHeightMode: Text.FixedHeight
            wrapMode: Text.Wrap
            maximumLineCount: 2
            elide: Text.ElideRight

            Accessible.ignored: true
        }
    }

    Item {
        id: mediaSlot

        anchors.fill: parent
    }

    FocusRing {
        shown: root.visualFocus
        controlRadius: Theme.promotionRadius
    }

    HoverTip {
        text: root.help
        shown: root.hovered
    }
}
