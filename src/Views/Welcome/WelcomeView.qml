import QtQuick
import Quillmere

/// The setup wizard over the whole window. Nothing but its own buttons ends it; the window itself can still be moved,
/// hidden and resized, and the program ended.
ModalPopup {
    id: root

    required property ViewModelFactory viewModels

    readonly property WelcomeViewModel viewModel: viewModels.makeWelcome(root)

    signal finished
    signal quitRequested

    width: parent ? parent.width : 0
    height: parent ? parent.height : 0
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

        Accessible.role: Accessible.Dialog
        Accessible.name: root.accessibleName
    }

    // While this is open, the window's own keys reach nobody.
    WindowShortcuts {
        onCloseRequested: root.parent.Window.window.close()
        onQuitRequested: root.quitRequested()
    }

    Connections {
        function onFinished() {
            root.finished();
        }

        target: root.viewModel
    }

    WindowDragArea {
        width: parent.width
        height: Theme.windowBarHeight
    }

    WelcomeCard {
        id: card

        anchors.centerIn: parent
        viewModel: root.viewModel
    }

    WindowButtons {
        anchors.right: parent.right
        anchors.rightMargin: 10
        y: 12
    }
}
