import QtQuick
import Quillmere

/// The wizard itself: at the left what it is and how far it has come, at the right the step with its buttons.
Item {
    id: root

    required property WelcomeViewModel viewModel

    /// Where the keyboard begins in a step; nothing where there is nothing to press.
    readonly property Item defaultButton: footer.defaultButton
    readonly property int step: viewModel.currentStep
    readonly property string family: ["welcome", "privacy", "terms", "installing", "completed"][step - 1]
    readonly property string title: texts.of(family + ".title")
    readonly property string message: {
        if (step === 4)
            return "";
        if (step === 5)
            return texts.of("completed.before") + viewModel.installedDestinationText + texts.of("completed.after");
        return texts.of(family + ".text");
    }
    readonly property int columnWidth: 196
    readonly property int footerHeight: 80
    readonly property int margin: 32

    readonly property WelcomeText texts: WelcomeText {
        viewModel: root.viewModel
    }

    function sourceOf(step: int): Component {
        switch (step) {
        case 1:
            return startStep;
        case 4:
            return installStep;
        default:
            return textStep;
        }
    }

    Keys.forwardTo: [scroller]

    onStepChanged: {
        showFromItsTop();
        Qt.callLater(takeFocus); // qmllint disable type
    }

    function takeFocus() {
        // The step that works has no button; there the keyboard waits on what tells how far it is.
        const target = defaultButton ?? content.item?.focusTarget ?? null;
        if (target !== null)
            target.forceActiveFocus(Qt.TabFocusReason);
    }

    function showFromItsTop() {
        scroller.contentY = -scroller.topMargin;
        fade.restart();
    }

    WelcomeColumn {
        width: root.columnWidth
        height: parent.height
        logoFile: root.viewModel.logoFile
        subtitle: root.texts.of("subtitle." + root.step)
        step: root.step
        spokenStep: root.texts.of("step") + " " + root.step + " / 5"
    }

    ScrollArea {
        id: scroller

        x: root.columnWidth
        width: root.width - x
        height: links.y - 8
        topMargin: 36
        contentHeight: content.height

        Loader {
            id: content

            x: root.margin
            width: scroller.width - 2 * root.margin
            sourceComponent: root.sourceOf(root.step)
            opacity: 1

            onLoaded: root.showFromItsTop()

            NumberAnimation {
                id: fade

                target: content
                property: "opacity"
                from: 0
                to: 1
                duration: Theme.wizardDuration
                easing.type: Easing.OutCubic
            }
        }
    }

    Item {
        id: links

        x: root.columnWidth + root.margin
        y: root.height - root.footerHeight - height - 10
        width: root.width - root.columnWidth - 2 * root.margin
        height: 36

        LinkText {
            anchors.centerIn: parent
            width: Math.min(implicitWidth, parent.width)
            visible: root.step === 1
            text: root.texts.of("runWithoutInstalling")

            onClicked: root.viewModel.runWithoutInstalling()
        }

        Row {
            anchors.centerIn: parent
            visible: root.step !== 1
            spacing: 20

            LinkText {
                text: root.texts.of("link.promotion")

                onClicked: root.viewModel.openPromotionPage()
            }

            LinkText {
                text: root.texts.of("link.maker")

                onClicked: root.viewModel.openMakerPage()
            }
        }
    }

    Divider {
        x: root.columnWidth
        y: root.height - root.footerHeight
        width: root.width - x
    }

    WelcomeFooter {
        id: footer

        x: root.columnWidth
        y: root.height - root.footerHeight
        width: root.width - x
        height: root.footerHeight
        viewModel: root.viewModel
        texts: root.texts
        // A title that ends a sentence by itself needs no full stop.
        spokenStep: root.title + (/[.!?]$/.test(root.title) ? " " : ". ") + root.message
    }

    // qmllint disable unqualified
    Component {
        id: startStep

        WelcomeStart {
            viewModel: root.viewModel
            texts: root.texts
        }
    }

    Component {
        id: installStep

        WelcomeInstallation {
            viewModel: root.viewModel
            texts: root.texts
        }
    }

    Component {
        id: textStep

        WelcomeMessage {
            symbol: root.step === 2 ? "hand.raised.fill" : root.step === 3 ? "exclamationmark.triangle.fill"
                                                                            : "checkmark.circle.fill"
            symbolColor: root.step === 2 ? Theme.accent : root.step === 3 ? Theme.orangeText : Theme.greenText
            title: root.title
            message: root.message
        }
    }
    // qmllint enable unqualified
}
