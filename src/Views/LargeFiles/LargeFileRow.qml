import QtQuick
import Quillmere

/// A large file: what kind it is, its name and place, its size and date, and what can be done with it.
MenuListRow {
    id: root

    required property var file
    required property string name
    required property string pathText
    required property string iconName
    required property string sizeText
    required property string dateText
    required property LargeFileColumns columns

    record: file
    moreX: columns.actionsX
    dividerFrom: columns.nameX

    Accessible.name: name + ", " + sizeText + ", " + dateText + ", " + pathText
    Accessible.description: Texts.localized("control.hint.menu")

    onActivated: askForMenu()

    IconTile {
        x: root.columns.iconX
        anchors.verticalCenter: parent.verticalCenter
        symbol: root.iconName
    }

    ElidingText {
        x: root.columns.nameX
        y: 10
        width: root.columns.nameWidth
        height: 20
        text: root.name
        size: 14
        weight: Font.DemiBold
        elide: Text.ElideMiddle

        Accessible.ignored: true
    }

    ElidingText {
        x: root.columns.nameX
        y: 31
        width: root.columns.nameWidth
        height: 16
        text: root.pathText
        size: 12
        color: Theme.textTertiary
        elide: Text.ElideMiddle

        Accessible.ignored: true
    }

    Figure {
        x: root.columns.sizeEnd - width
        anchors.verticalCenter: parent.verticalCenter
        text: root.sizeText
        size: 14
        weight: Font.DemiBold

        Accessible.ignored: true
    }

    ElidingText {
        x: root.columns.dateX
        width: root.columns.dateWidth
        height: parent.height
        text: root.dateText
        color: Theme.textSecondary

        Accessible.ignored: true
    }
}
