import QtQuick
import QtQuick.Templates as T
import Quillmere

/// A field to search by: lens, prompt, and a button that clears it. Escape clears it too.
T.TextField {
    id: root

    implicitWidth: 220
    implicitHeight: 32
    leftPadding: 33
    rightPadding: 36
    color: Theme.text
    placeholderTextColor: Theme.textTertiary
    selectionColor: Theme.accentFill
    selectedTextColor: Theme.fillText
    selectByMouse: true
    verticalAlignment: TextInput.AlignVCenter
    font.family: Theme.textFamily
    font.pixelSize: 13

    Accessible.role: Accessible.EditableText
    Accessible.name: placeholderText
    Accessible.searchEdit: true

    Keys.onEscapePressed: event => {
        event.accepted = root.text !== "";
        root.clear();
    }

    background: InputSurface {
        focused: root.activeFocus
    }

    BodyText {
        anchors.fill: parent
        anchors.leftMargin: root.leftPadding
        anchors.rightMargin: root.rightPadding
        visible: root.text === "" && root.preeditText === ""
        text: root.placeholderText
        color: root.placeholderTextColor
        elide: Text.ElideRight

        Accessible.ignored: true
    }

    Symbol {
        x: 10
        anchors.verticalCenter: parent.verticalCenter
        name: "search"
        size: 16
        color: Theme.textTertiary
    }

    IconButton {
        anchors.right: parent.right
        anchors.rightMargin: 4
        anchors.verticalCenter: parent.verticalCenter
        visible: root.text !== ""
        side: 24
        symbolSize: 16
        symbol: "clear"
        color: Theme.textTertiary
        accessibleName: Texts.localized("control.clearSearch")

        onClicked: {
            root.clear();
            root.forceActiveFocus();
        }
    }
}
