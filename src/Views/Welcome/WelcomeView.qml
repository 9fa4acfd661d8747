import QtQuick
import Quillmere

/// The setup wizard over the whole window. Nothing but its own buttons ends it.
ModalPopup {
    id: root

    required property ViewModelFactory viewModels

    readonly property WelcomeViewModel viewModel: viewModels.makeWelcome(root)

    signal finished

    surfaceWidth: 580
    surfaceHeight: 480
    surfaceRadius: 20
    elevation: Elevation.Overlay
    dim: false
    accessibleName: card.texts.of("welcome.title")
    initialFocus: card.defaultButton

    Component.onCompleted: viewModel.appear()

    // It stands from the first frame on: there is nothing yet for it to come up over.
    enter: null

    exit: Transition {
        NumberAnimation {
            property: "opacity"
            from: 1
            to: 0
            duration: Theme.wizardDuration
            easing.type: Easing.InCubic
        }
    }

    background: Rectangle {
        color: Theme.wizardDim
    }

    Connections {
        function onFinished() {
            root.finished();
        }

        target: root.viewModel
    }

    WelcomeCard {
        id: card

        anchors.fill: parent
        viewModel: root.viewModel
    }
}
