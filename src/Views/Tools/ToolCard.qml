import QtQuick
import Quillmere

/// One tool: what it is for, and the button that runs it.
Panel {
    id: root

    property string title
    property string description
    property string symbol
    /// It destroys what it works on.
    property bool isDangerous: false

    signal run

    implicitHeight: Math.max(texts.implicitHeight, runButton.height) + 28

    Accessible.role: Accessible.Grouping
    Accessible.name: title
    Accessible.description: description

    IconTile {
        id: tile

        x: 16
        anchors.verticalCenter: parent.verticalCenter
        symbol: root.symbol
        symbolColor: root.isDangerous ? Theme.redText : Theme.accent
    }

    Column {
        id: texts

        x: tile.x + tile.width + 14
        width: runButton.x - 12 - x
        anchors.verticalCenter: parent.verticalCenter
        spacing: 3

        HeadingText {
            width: parent.width
            text: root.title
            wrapMode: Text.Wrap
        }

        CaptionText {
            width: parent.width
            text: root.description
            wrapMode: Text.Wrap
        }
    }

    ActionButton {
        id: runButton

        anchors.right: parent.right
        anchors.rightMargin: 16
        anchors.verticalCenter: parent.verticalCenter
        size: ActionButton.Small
        kind: root.isDangerous ? ActionButton.DestructiveQuiet : ActionButton.Tinted
        text: Texts.localized("tools.run")
        accessibleName: text + ", " + root.title

        onClicked: root.run()
    }
}
