import QtQuick
import Quillmere

/// Whether the application may send, and the button that turns it round.
CardView {
    id: root

    required property ApplicationsViewModel viewModel

    readonly property bool isBlocked: viewModel.isSelectedTrafficBlocked
    /// Beside a long text the button would leave it no room.
    readonly property bool isNarrow: width < 440

    title: Texts.localized("applications.internetTraffic")
    icon: isBlocked ? "wifi.slash" : "wifi"

    Item {
        width: parent.width
        height: root.isNarrow ? words.height + 12 + button.height : Math.max(words.height, button.height)

        BodyText {
            id: words

            y: root.isNarrow ? 0 : (parent.height - height) / 2
            width: root.isNarrow ? parent.width : button.x - 16
            text: Texts.localized(root.isBlocked ? "applications.trafficRestricted" : "applications.trafficAllowed")
            color: root.isBlocked ? Theme.orangeText : Theme.textSecondary
            lineHeight: 18
            lineHeightMode: Text.FixedHeight
            wrapMode: Text.Wrap
        }

        ActionButton {
            id: button

            x: root.isNarrow ? 0 : parent.width - width
            y: root.isNarrow ? words.height + 12 : (parent.height - height) / 2
            size: ActionButton.Small
            kind: root.isBlocked ? ActionButton.Tinted : ActionButton.Quiet
            text: Texts.localized(root.isBlocked ? "applications.allowTraffic" : "applications.blockTraffic")

            onClicked: root.viewModel.toggleSelectedTraffic()
        }
    }
}
