import QtQuick
import Quillmere

/// What a screen shows while it has nothing to show: the ripple, a sentence, and the button that begins.
Item {
    id: root

    property string symbol
    property string sentence
    property string buttonText
    property string buttonSymbol
    property bool buttonEnabled: true
    property bool working: false

    signal started()

    implicitWidth: 400
    implicitHeight: column.implicitHeight + 48

    function takeFocus() {
        button.forceActiveFocus(Qt.TabFocusReason);
    }

    Column {
        id: column

        anchors.centerIn: parent
        width: Math.min(parent.width - 48, 460)
        spacing: 14

        Ripple {
            anchors.horizontalCenter: parent.horizontalCenter
            symbol: root.symbol
            working: root.working
        }

        BodyText {
            width: parent.width
            visible: text !== ""
            text: root.sentence
            size: 15
            color: Theme.textSecondary
            wrapMode: Text.Wrap
            horizontalAlignment: Text.AlignHCenter
        }

        Item {
            width: 1
            height: 4
            visible: button.visible
        }

        ActionButton {
            id: button

            anchors.horizontalCenter: parent.horizontalCenter
            width: Math.min(implicitWidth, parent.width)
            visible: text !== ""
            enabled: root.buttonEnabled
            kind: ActionButton.Primary
            size: ActionButton.Large
            leftPadding: 26
            text: root.buttonText
            symbol: root.buttonSymbol

            onClicked: root.started()
        }
    }
}
