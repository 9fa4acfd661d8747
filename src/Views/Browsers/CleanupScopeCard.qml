import QtQuick
import Quillmere

/// What a cleaning of a browser is to take, with a warning while that is more than caches.
CardView {
    id: root

    required property BrowsersViewModel viewModel

    title: Texts.localized("browsers.cleanupScope")
    icon: "checkmark.square"

    Column {
        width: parent.width

        LabelledToggle {
            width: parent.width
            text: Texts.localized("browsers.cacheRecommended")
            on: root.viewModel.cleanCache

            onSwitched: on => root.viewModel.cleanCache = on
        }

        LabelledToggle {
            width: parent.width
            text: Texts.localized("browsers.cookiesWarning")
            on: root.viewModel.cleanCookies

            onSwitched: on => root.viewModel.cleanCookies = on
        }

        LabelledToggle {
            width: parent.width
            text: Texts.localized("browsers.history")
            on: root.viewModel.cleanHistory

            onSwitched: on => root.viewModel.cleanHistory = on
        }

        Item {
            width: 1
            height: 10
            visible: banner.visible
        }

        WarningBanner {
            id: banner

            width: parent.width
            visible: root.viewModel.needsWarning
            symbol: "exclamationmark.triangle.fill"
            message: Texts.localized("browsers.warning")
        }
    }
}
