import QtQuick
import Quillmere

/// A row of a cleanup screen: the switch, what it is, how much of it there is and how risky, and on request its
/// first items. Pressing the row opens and closes it; the switch asks for the selection.
ListRow {
    id: root

    property string name
    property string description
    property string iconName
    property string countText
    property string sizeText
    property int riskLevel: RiskLevel.Safe
    property bool selected: false
    /// False makes the row an inventory: it cannot be selected and says so with `keepText`.
    property bool available: true
    property string keepText
    property bool expanded: false
    /// A list of {name, size}, in the order to show.
    property var items: []
    property string moreText

    readonly property bool narrow: width < Theme.narrowBelow
    readonly property int baseHeight: Math.max(74, Math.ceil(words.implicitHeight) + 20)
    readonly property int textX: narrow ? 116 : 126
    readonly property color tone: available ? Theme.accent : Theme.textTertiary

    signal selectionToggled(bool selected)
    signal expansionToggled()

    implicitHeight: baseHeight + (expanded ? details.implicitHeight + 18 : 0)
    highlightHeight: baseHeight
    dividerFrom: textX
    accessibleName: {
        let spoken = name;
        for (const part of [description, available ? "" : keepText, countText, sizeText, badge.label])
            spoken += part === "" ? "" : ", " + part;
        return spoken;
    }

    Accessible.description: Texts.localized(expanded ? "control.collapse" : "control.expand")

    onClicked: expansionToggled()

    Behavior on implicitHeight {
        enabled: root.visible && !Theme.reducedMotion

        NumberAnimation {
            duration: Theme.expandDuration
            easing.type: Easing.OutCubic
        }
    }

    Toggle {
        x: root.narrow ? 16 : 20
        y: (root.baseHeight - height) / 2
        enabled: root.available
        on: root.selected
        accessibleName: root.name

        onSwitched: on => root.selectionToggled(on)
    }

    IconTile {
        x: root.narrow ? 66 : 74
        y: (root.baseHeight - height) / 2
        symbol: root.iconName
        symbolColor: root.tone
    }

    Column {
        id: words

        x: root.textX
        y: (root.baseHeight - height) / 2
        width: figures.x - x - 16
        spacing: 2

        ElidingText {
            width: parent.width
            text: root.name
            size: 14
            weight: Font.DemiBold
            wrapMode: Text.Wrap
            maximumLineCount: 3

            Accessible.ignored: true
        }

        ElidingText {
            width: parent.width
            visible: text !== ""
            text: root.description
            size: 12
            color: Theme.textSecondary
            lineHeight: 16
            lineHeightMode: Text.FixedHeight
            wrapMode: Text.Wrap
            maximumLineCount: 5

            Accessible.ignored: true
        }

        Item {
            width: parent.width
            height: Math.max(16, reason.implicitHeight)
            visible: !root.available

            Symbol {
                y: 1
                name: "lock"
                size: 14
                color: Theme.textTertiary
            }

            ElidingText {
                id: reason

                x: 19
                width: parent.width - x
                text: root.keepText
                size: 12
                weight: Font.Medium
                color: Theme.textTertiary
                lineHeight: 16
                lineHeightMode: Text.FixedHeight
                wrapMode: Text.Wrap
                maximumLineCount: 2

                Accessible.ignored: true
            }
        }
    }

    Item {
        id: figures

        readonly property real countWidth: root.narrow ? 0 : Math.max(90, countFigure.implicitWidth + 12)

        anchors.right: badgeSlot.left
        anchors.rightMargin: root.narrow ? 10 : 14
        width: root.narrow ? Math.max(74, sizeFigure.implicitWidth, countFigure.implicitWidth)
                           : Math.max(100, sizeFigure.implicitWidth + 12) + countWidth
        height: root.baseHeight

        Figure {
            id: sizeFigure

            anchors.right: parent.right
            y: root.narrow ? parent.height / 2 - height - 1 : (parent.height - height) / 2
            text: root.sizeText
            size: 14
            weight: Font.DemiBold

            Accessible.ignored: true
        }

        Figure {
            id: countFigure

            anchors.right: parent.right
            anchors.rightMargin: root.narrow ? 0 : parent.width - parent.countWidth
            y: root.narrow ? parent.height / 2 + 2 : (parent.height - height) / 2
            text: root.countText
            size: 12
            weight: Font.Normal
            color: Theme.textSecondary

            Accessible.ignored: true
        }
    }

    Item {
        id: badgeSlot

        anchors.right: chevron.left
        anchors.rightMargin: root.narrow ? 6 : 12
        width: root.narrow ? 96 : 100
        height: root.baseHeight

        RiskBadge {
            id: badge

            y: (parent.height - height) / 2
            width: Math.min(implicitWidth, parent.width)
            riskLevel: root.riskLevel

            Accessible.ignored: true
        }
    }

    Symbol {
        id: chevron

        anchors.right: parent.right
        anchors.rightMargin: root.narrow ? 12 : 18
        y: (root.baseHeight - height) / 2
        name: "chevron.down"
        size: 18
        color: Theme.textTertiary
        rotation: root.expanded ? 180 : 0

        Behavior on rotation {
            NumberAnimation {
                duration: Theme.knobDuration
                easing.type: Easing.OutCubic
            }
        }
    }

    ItemLines {
        id: details

        x: root.textX
        y: root.baseHeight - 2
        width: root.width - x - 20
        visible: root.expanded
        items: root.expanded ? root.items : []
        moreText: root.moreText
    }
}
