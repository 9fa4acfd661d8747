import QtQuick
import Quillmere

/// The buttons of a step: back at the left, onward at the right. The step that works has none.
Item {
    id: root

    required property WelcomeViewModel viewModel
    required property WelcomeText texts
    /// What the step tells, for those who hear it: the keyboard stays on a button while the rest changes.
    property string spokenStep

    readonly property int step: viewModel.currentStep
    readonly property Item defaultButton: onward.visible ? onward : null

    function goOn() {
        if (step === 5)
            viewModel.launch();
        else
            viewModel.next();
    }

    ActionButton {
        x: 24
        anchors.verticalCenter: parent.verticalCenter
        visible: root.step === 2 || root.step === 3
        size: ActionButton.Large
        text: root.texts.of("back")

        onClicked: root.viewModel.back()
    }

    ActionButton {
        id: onward

        anchors.right: parent.right
        anchors.rightMargin: 24
        anchors.verticalCenter: parent.verticalCenter
        width: Math.max(92, implicitWidth)
        visible: root.step !== 4
        size: ActionButton.Large
        kind: ActionButton.Primary
        text: root.texts.of(root.step === 5 ? "launch" : root.step === 3 ? "install" : "next")

        Accessible.description: root.spokenStep

        onClicked: root.goOn()
        // Takes the second of two quick presses, which was not meant for the next step's button.
        onDoubleClicked: {}
    }
}
