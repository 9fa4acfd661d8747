import QtQuick
import QtQuick.Controls.Basic

ApplicationWindow {
    id: root

    property int presses: 0

    width: 480
    height: 320
    title: "A sample to point at"
    visible: true

    Column {
        anchors.fill: parent
        anchors.margins: 24
        spacing: 12

        Label {
            text: "Pressed " + root.presses + " times"
        }

        Button {
            text: "Press me"
            focusPolicy: Qt.StrongFocus
            onClicked: root.presses += 1
        }

        CheckBox {
            id: shown

            text: "Show more"
        }

        TextField {
            id: field

            Accessible.name: "Your name"
            width: 200
        }

        Label {
            visible: shown.checked
            text: "More from " + field.text
        }
    }
}
