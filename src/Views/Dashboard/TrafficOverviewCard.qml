import QtQuick
import Quillmere

/// What goes over the network, and the switch that lets only few applications send.
CardView {
    id: root

    required property DashboardViewModel viewModel

    readonly property bool isNarrow: width < Theme.narrowBelow

    title: Texts.localized("traffic.title")
    icon: "globe"

    trailing: ActionButton {
        kind: ActionButton.Link
        text: Texts.localized("traffic.reset")
        symbol: "refresh"

        onClicked: root.viewModel.resetTrafficCalculation()
    }

    Grid {
        id: metrics

        readonly property real cellWidth: (parent.width - (columns - 1) * columnSpacing) / columns

        width: parent.width
        columns: root.isNarrow ? 2 : 4
        columnSpacing: 12
        rowSpacing: 8

        TrafficMetric {
            width: metrics.cellWidth
            title: Texts.localized("traffic.currentDownload")
            valueText: root.viewModel.currentDownloadText
            symbol: "arrow.down"
            color: Theme.accent
        }

        TrafficMetric {
            width: metrics.cellWidth
            title: Texts.localized("traffic.currentUpload")
            valueText: root.viewModel.currentUploadText
            symbol: "arrow.up"
            color: Theme.accent
        }

        TrafficMetric {
            width: metrics.cellWidth
            title: Texts.localized("traffic.downloaded")
            valueText: root.viewModel.totalDownloadText
            symbol: "tray.and.arrow.down"
        }

        TrafficMetric {
            width: metrics.cellWidth
            title: Texts.localized("traffic.uploaded")
            valueText: root.viewModel.totalUploadText
            symbol: "tray.and.arrow.up"
        }
    }

    Divider {
        id: divider

        y: metrics.height + 12
        width: parent.width
    }

    ActionButton {
        id: eco

        y: divider.y + 13 + Math.max(0, (description.height - height) / 2)
        kind: root.viewModel.ecoTrafficEnabled ? ActionButton.On : ActionButton.Quiet
        text: Texts.localized(root.viewModel.ecoTrafficEnabled ? "traffic.ecoOn" : "traffic.eco")
        symbol: "leaf"

        Accessible.description: Texts.localized("traffic.ecoHelp")

        onClicked: root.viewModel.toggleEcoTraffic()

        HoverTip {
            text: Texts.localized("traffic.ecoHelp")
            shown: eco.hovered || eco.visualFocus
        }
    }

    CaptionText {
        id: description

        x: eco.width + 16
        y: divider.y + 13 + Math.max(0, (eco.height - height) / 2)
        width: parent.width - x
        text: Texts.localized("traffic.ecoDescription")
        wrapMode: Text.Wrap
    }
}
