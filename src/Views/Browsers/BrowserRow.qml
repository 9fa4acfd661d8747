import QtQuick
import Quillmere
import Quillmere.Support

/// A browser: its icon, how much cache it holds, and what can be done with it as it now is.
Item {
    id: root

    required property string name
    required property string icon
    required property string cacheSizeText
    required property bool isRunning

    property bool last: false

    readonly property int textX: 74
    readonly property bool marked: pointer.hovered || cleanButton.visualFocus || quitButton.visualFocus

    signal cleanRequested
    signal quitRequested

    implicitHeight: Math.max(68, words.implicitHeight + 24)

    Accessible.role: Accessible.ListItem
    Accessible.name: name + ", " + Texts.localized("browsers.cacheSize") + " " + cacheSizeText
        + (isRunning ? ", " + Texts.localized("browsers.running") : "")

    HoverHandler {
        id: pointer
    }

    RowHighlight {
        shown: root.marked
    }

    IconTile {
        x: 22
        anchors.verticalCenter: parent.verticalCenter
        visible: !picture.visible
        symbol: "globe"
    }

    Image {
        id: picture

        x: 22
        anchors.verticalCenter: parent.verticalCenter
        width: 38
        height: 38
        sourceSize.width: 38
        sourceSize.height: 38
        visible: ApplicationIcons.has(root.icon)
        source: visible ? ApplicationIcons.source(root.icon, root.name) : ""

        Accessible.ignored: true
    }

    Flow {
        id: words

        x: root.textX
        anchors.verticalCenter: parent.verticalCenter
        width: size.x - x - 16
        spacing: 8

        ElidingText {
            width: Math.min(implicitWidth, parent.width)
            height: 22
            text: root.name
            size: 14
            weight: Font.DemiBold

            Accessible.ignored: true
        }

        Badge {
            visible: root.isRunning
            text: Texts.localized("browsers.running")
            symbol: "play.circle.fill"
        }
    }

    Column {
        id: size

        anchors.right: actions.left
        anchors.rightMargin: 20
        anchors.verticalCenter: parent.verticalCenter
        width: Math.max(96, caption.implicitWidth, figure.implicitWidth)
        spacing: 2

        CaptionText {
            id: caption

            anchors.right: parent.right
            text: Texts.localized("browsers.cacheSize")

            Accessible.ignored: true
        }

        Figure {
            id: figure

            anchors.right: parent.right
            text: root.cacheSizeText
            size: 14
            weight: Font.DemiBold

            Accessible.ignored: true
        }
    }

    // As wide as the wider of the two, so that the figures of all rows stand in one column.
    Item {
        id: actions

        anchors.right: parent.right
        anchors.rightMargin: Theme.cardPadding
        width: Math.max(cleanButton.implicitWidth, quitButton.implicitWidth)
        height: parent.height

        ActionButton {
            id: cleanButton

            anchors.verticalCenter: parent.verticalCenter
            width: parent.width
            visible: !root.isRunning
            kind: ActionButton.Tinted
            size: ActionButton.Small
            symbol: "broom"
            text: Texts.localized("common.clean")

            Accessible.description: root.name

            onClicked: root.cleanRequested()
        }

        ActionButton {
            id: quitButton

            anchors.verticalCenter: parent.verticalCenter
            width: parent.width
            visible: root.isRunning
            size: ActionButton.Small
            text: Texts.localized("browsers.quitBrowser")

            Accessible.description: root.name

            onClicked: root.quitRequested()
        }
    }

    Divider {
        x: root.textX
        y: parent.height - 1
        width: parent.width - x - Theme.cardPadding
        visible: !root.last && !root.marked
    }
}
