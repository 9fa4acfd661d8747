import QtQuick
import Quillmere

/// How much a removal may cost: symbol, word and colour of one level. The word shrinks a little before it is cut.
Rectangle {
    id: root

    required property int riskLevel

    readonly property string symbolName: ["checkmark.shield", "exclamationmark.triangle", "xmark.octagon",
                                          "bolt.trianglebadge.exclamationmark"][riskLevel]
    readonly property color levelColor: [Theme.greenText, Theme.orangeText, Theme.redText, Theme.purpleText][riskLevel]
    readonly property string label: Texts.localized(["common.safe", "common.medium", "common.high",
                                                     "common.dangerous"][riskLevel])
    readonly property real smallestScale: 0.78
    readonly property real room: width - 25 - 8

    implicitWidth: Math.ceil(word.implicitWidth) + 33
    implicitHeight: 22
    radius: height / 2
    color: Theme.tint(levelColor, 0.15)

    Accessible.role: Accessible.StaticText
    Accessible.name: label

    Symbol {
        x: 7
        anchors.verticalCenter: parent.verticalCenter
        name: root.symbolName
        size: 14
        color: root.levelColor
    }

    BodyText {
        id: word

        x: 25
        width: Math.min(Math.ceil(implicitWidth), root.room / scale)
        anchors.verticalCenter: parent.verticalCenter
        transformOrigin: Item.Left
        scale: Math.max(root.smallestScale, Math.min(1, root.room / Math.ceil(implicitWidth)))
        text: root.label
        size: 12
        weight: Font.DemiBold
        color: root.levelColor
        elide: Text.ElideRight

        Accessible.ignored: true
    }
}
