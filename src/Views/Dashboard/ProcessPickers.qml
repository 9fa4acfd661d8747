import QtQuick
import Quillmere

/// Which applications are listed, and in what order.
Row {
    id: root

    required property ResourceMonitorViewModel viewModel

    readonly property list<int> filterModes: [FilterMode.UserApps, FilterMode.All]
    readonly property list<int> sortFields: [SortField.Cpu, SortField.Memory, SortField.Name]

    spacing: 10

    SegmentedPicker {
        model: [Texts.localized("resource.userApps"), Texts.localized("resource.allProcesses")]
        currentIndex: root.filterModes.indexOf(root.viewModel.filterMode)
        accessibleName: Texts.localized("dashboard.resourceMonitor")

        onPicked: index => root.viewModel.filterMode = root.filterModes[index]
    }

    BodyText {
        height: 32
        leftPadding: 6
        text: Texts.localized("resource.sortBy")
        color: Theme.textSecondary
    }

    MenuPicker {
        model: [Texts.localized("dashboard.topCPU"), Texts.localized("dashboard.topRAM"),
                Texts.localized("resource.name")]
        currentIndex: root.sortFields.indexOf(root.viewModel.sortField)
        accessibleName: Texts.localized("resource.sortBy")

        onActivated: index => root.viewModel.sortField = root.sortFields[index]
    }
}
