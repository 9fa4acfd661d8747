import QtQuick
import Quillmere

/// How full the start-up volume is.
CardView {
    id: root

    required property DashboardViewModel viewModel

    title: Texts.localized("dashboard.diskUsage")
    icon: "internaldrive"

    trailing: Figure {
        text: root.viewModel.diskText
        size: 28
        weight: Font.Bold
        color: [Theme.blue, Theme.orangeText, Theme.redText][root.viewModel.diskLevel]
    }

    DiskBar {
        y: 14
        width: parent.width
        value: root.viewModel.diskUsage
        level: root.viewModel.diskLevel

        Accessible.name: root.title + ", " + root.viewModel.diskText
    }

    DiskFigure {
        y: 56
        width: parent.width / 2 - 8
        title: Texts.localized("dashboard.usedSpace")
        sizeText: root.viewModel.usedSpaceText
        color: [Theme.blue, Theme.orange, Theme.red][root.viewModel.diskLevel]
    }

    DiskFigure {
        x: parent.width / 2
        y: 56
        width: parent.width / 2
        title: Texts.localized("dashboard.freeSpace")
        sizeText: root.viewModel.freeSpaceText
        color: Theme.track
        outlined: true
    }
}
