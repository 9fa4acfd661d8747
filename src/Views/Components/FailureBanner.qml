import QtQuick
import Quillmere

/// What could not be done, in one sentence, until it is put away.
Rectangle {
    id: root

    property string message
    property string dismissText

    signal dismissed

    implicitHeight: Math.max(52, sentence.implicitHeight + 24)
    radius: Theme.cardRadius
    color: Theme.tint(Theme.redText, Theme.dark ? 0.14 : 0.08)
    border.width: 1
    border.color: Theme.tint(Theme.redText, 0.35)

    Accessible.role: Accessible.AlertMessage
    Accessible.name: message

    Symbol {
        x: 24
        anchors.verticalCenter: parent.verticalCenter
        name: "xmark.octagon"
        size: 20
        color: Theme.redText
    }

    BodyText {
        id: sentence

        x: 68
        anchors.verticalCenter: parent.verticalCenter
        width: dismissButton.x - x - 16
        text: root.message
        weight: Font.Medium
        wrapMode: Text.Wrap

        Accessible.ignored: true
    }

    ActionButton {
        id: dismissButton

        anchors.right: parent.right
        anchors.rightMargin: 10
        anchors.verticalCenter: parent.verticalCenter
        size: ActionButton.Small
        text: root.dismissText

        onClicked: root.dismissed()
    }
}
