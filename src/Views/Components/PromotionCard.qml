import QtQuick
import Quillmere

/// The promotion in the sidebar. Without media of its own it shows the program's: a low sun over water. A message that
/// is cut is shown whole while the keyboard is on the card or the pointer rests on it.
PressableControl {
    id: root

    property string name: Texts.localized("promotion.name")
    property string slogan: Texts.localized("promotion.slogan")
    property string message: Texts.localized("promotion.text")
    property string help
    /// Before the name, where the text stands on media; empty for none.
    property string symbol
    /// A picture or a movie in place of the drawn one.
    property Component media: null

    readonly property bool drawn: media === null
    readonly property bool isAsked: visualFocus || lingered
    property bool lingered: false

    implicitWidth: 199
    implicitHeight: 126
    accessibleName: message === "" ? name : name + ". " + message

    background: PromotionDrawing {
        visible: root.drawn
        shining: !words.unfolded
    }

    contentItem: PromotionText {
        id: words

        visible: root.drawn
        isAsked: root.isAsked
        name: root.name
        slogan: root.slogan
        message: root.message
    }

    onHoveredChanged: lingered = false

    Timer {
        interval: Theme.tooltipDelay
        running: root.hovered
        onTriggered: root.lingered = true
    }

    Loader {
        anchors.fill: parent
        active: !root.drawn

        sourceComponent: PromotionMedia {
            media: root.media // qmllint disable unqualified
            symbol: root.symbol // qmllint disable unqualified
            name: root.name // qmllint disable unqualified
            message: root.message // qmllint disable unqualified
            isAsked: root.isAsked // qmllint disable unqualified
        }
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
