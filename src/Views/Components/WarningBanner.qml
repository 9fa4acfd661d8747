import QtQuick
import Quillmere

/// A warning that stays in sight above what it speaks of.
Rectangle {
    id: root

    property string title
    property string message
    property string symbol: "exclamationmark.triangle"

    implicitHeight: Math.max(68, column.implicitHeight + 20)
    radius: Theme.cardRadius
    color: Theme.bannerGround
    border.width: 1
    border.color: Theme.bannerBorder

    Accessible.role: Accessible.AlertMessage
    Accessible.name: title === "" ? message : title + ". " + message

    Rectangle {
        x: 14
        anchors.verticalCenter: parent.verticalCenter
        width: 40
        height: 40
        radius: Theme.tileRadius
        color: Theme.tint(Theme.orange, Theme.dark ? 0.22 : 0.16)

        Symbol {
            anchors.centerIn: parent
            name: root.symbol
            color: Theme.orangeText
        }
    }

    Column {
        id: column

        x: 68
        anchors.verticalCenter: parent.verticalCenter
        width: root.width - x - Theme.cardPadding

        BodyText {
            width: parent.width
            visible: text !== ""
            text: root.title
            weight: Font.DemiBold
            color: Theme.orangeText
            wrapMode: Text.Wrap

            Accessible.ignored: true
        }

        CaptionText {
            width: parent.width
            text: root.message
            color: Theme.text
            lineHeight: 16
            lineHeightMode: Text.FixedHeight
            wrapMode: Text.Wrap

            Accessible.ignored: true
        }
    }
}
