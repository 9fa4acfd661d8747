import QtQuick
import Quillmere

/// How the processors and the memory are loaded, and the verdict on the machine.
CardView {
    id: root

    required property DashboardViewModel viewModel

    title: Texts.localized("dashboard.healthOverview")
    icon: "pulse"

    trailing: Item {
        width: root.viewModel.isLoading ? loading.width : status.width
        height: 24

        Row {
            id: loading

            height: parent.height
            visible: root.viewModel.isLoading
            spacing: 8

            Spinner {
                anchors.verticalCenter: parent.verticalCenter
                running: loading.visible
                size: 14
            }

            CaptionText {
                height: parent.height
                text: Texts.localized("common.loading")
            }
        }

        SystemStatusLabel {
            id: status

            visible: !root.viewModel.isLoading
            status: root.viewModel.systemStatus
        }
    }

    Column {
        y: 4
        width: parent.width
        spacing: 16

        LoadMeter {
            width: parent.width
            title: Texts.localized("dashboard.cpuLoad")
            valueText: root.viewModel.cpuText
            value: root.viewModel.cpuUsage / 100
            level: root.viewModel.cpuLevel
        }

        LoadMeter {
            width: parent.width
            title: Texts.localized("dashboard.ramLoad")
            info: root.viewModel.formattedRAMInfo
            valueText: root.viewModel.ramText
            value: root.viewModel.ramUsage / 100
            level: root.viewModel.ramLevel
        }
    }
}
