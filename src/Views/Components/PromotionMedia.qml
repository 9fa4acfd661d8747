import QtQuick
import Quillmere

/// A promotion on a picture or a movie: its text stands on a dark strip at the foot.
Item {
    id: root

    property Component media
    property string symbol
    property string name
    property string message
    /// Somebody wants to read on.
    property bool isAsked: false
    /// What lies around the card, of which its corners are made.
    property color ground: Qt.rgba(Theme.sidebarTop.r * 0.85 + Theme.sidebarBottom.r * 0.15,
                                   Theme.sidebarTop.g * 0.85 + Theme.sidebarBottom.g * 0.15,
                                   Theme.sidebarTop.b * 0.85 + Theme.sidebarBottom.b * 0.15, 1)

    readonly property int edge: 6

    Rectangle {
        anchors.fill: parent
        color: Theme.promotionTop
    }

    Item {
        anchors.fill: parent
        clip: true

        Loader {
            anchors.fill: parent
            sourceComponent: root.media
        }
    }

    Rectangle {
        anchors.bottom: parent.bottom
        width: parent.width
        height: words.height + 14
        color: Theme.promotionStrip
    }

    Column {
        id: words

        x: 12
        anchors.bottom: parent.bottom
        anchors.bottomMargin: 8
        width: parent.width - 24

        Row {
            width: parent.width
            spacing: 5

            Symbol {
                id: sign

                anchors.verticalCenter: parent.verticalCenter
                visible: root.symbol !== ""
                name: root.symbol
                size: 14
                color: Theme.fillText
            }

            BodyText {
                width: parent.width - (sign.visible ? sign.width + parent.spacing : 0)
                text: root.name
                size: 12
                weight: Font.DemiBold
                color: Theme.fillText
                lineHeight: 16
                lineHeightMode: Text.FixedHeight
                elide: Text.ElideRight

                Accessible.ignored: true
            }
        }

        BodyText {
            width: parent.width
            visible: root.message !== ""
            text: root.message
            size: 11
            color: Theme.fillText
            lineHeight: 14
            lineHeightMode: Text.FixedHeight
            wrapMode: Text.Wrap
            maximumLineCount: root.isAsked ? 6 : 2
            elide: Text.ElideRight

            Accessible.ignored: true
        }
    }

    // No renderer clips to round corners without shaders, so the ground is laid over them.
    Rectangle {
        anchors.fill: parent
        anchors.margins: -root.edge
        radius: Theme.promotionRadius + root.edge
        color: "transparent"
        border.width: root.edge
        border.color: root.ground
    }
}
