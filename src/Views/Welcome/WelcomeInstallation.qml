import QtQuick
import Quillmere

/// The wizard's fourth step, which does its work when it appears.
Column {
    id: root

    required property WelcomeViewModel viewModel
    required property WelcomeText texts

    readonly property Item focusTarget: bar

    spacing: 14

    Component.onCompleted: viewModel.startInstallation()

    Item {
        width: root.width
        height: 132

        Ripple {
            anchors.centerIn: parent
            dropSize: 56
            symbol: "tray.and.arrow.down"
            working: true
        }
    }

    SheetTitleText {
        width: root.width
        size: 22
        text: root.texts.of("installing.title")
    }

    ProgressBar {
        id: bar

        width: root.width
        accessibleName: root.viewModel.installStatusText
        forwardOnly: true
        value: root.viewModel.installProgress
    }

    BodyText {
        width: root.width
        text: root.viewModel.installStatusText
        color: Theme.textSecondary
        wrapMode: Text.Wrap
    }
}
