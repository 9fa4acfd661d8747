import QtQuick
import Quillmere

/// Which applications are listed, and in what order.
Row {
    id: root

    required property ResourceMonitorViewModel viewModel

    spacing: 10

    SegmentedPicker {
        model: [Texts.localized("resource.userApps"), Texts.localized("resource.allProcesses")]
        currentIndex: root.viewModel.filterMode === FilterMode.UserApps ? 0 : 1
        accessibleName: Texts.localized("dashboard.resourceMonitor")

        onPicked: index => root.viewModel.filterMode = index === 0 ? FilterMode.UserApps : FilterMode.All
    }

    BodyText {
        height: 32
        leftPadding: 6
        text: Texts.localized("resource.sortBy")
        color: Theme.textSecondary
    }

    // In the order of SortField.
    MenuPicker {
        model: [Texts.localized("dashboard.topCPU"), Texts.localized("dashboard.topRAM"),
                Texts.localized("resource.name")]
        chosenIndex: root.viewModel.sortField
        accessibleName: Texts.localized("resource.sortBy")

        onActivated: index => root.viewModel.sortField = index
    }
}
