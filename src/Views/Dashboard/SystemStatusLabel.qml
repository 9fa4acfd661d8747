import QtQuick
import Quillmere

/// The verdict on the machine: a light and the word.
Rectangle {
    id: root

    property int status: SystemStatus.Good

    readonly property color ink: [Theme.greenText, Theme.orangeText, Theme.redText][status]
    readonly property color light: [Theme.green, Theme.orange, Theme.red][status]

    implicitWidth: label.x + label.implicitWidth + 11
    implicitHeight: 24
    width: implicitWidth
    height: implicitHeight
    radius: height / 2
    color: Theme.tint(ink, 0.13)

    Rectangle {
        x: 9
        anchors.verticalCenter: parent.verticalCenter
        width: 14
        height: 14
        radius: 7
        color: Theme.tint(root.light, 0.28)

        Rectangle {
            anchors.centerIn: parent
            width: 8
            height: 8
            radius: 4
            color: root.light
        }
    }

    CaptionText {
        id: label

        x: 30
        height: parent.height
        text: Texts.localized(["dashboard.status.good", "dashboard.status.needsAttention",
                               "dashboard.status.critical"][root.status])
        weight: Font.DemiBold
        color: root.ink
    }
}
