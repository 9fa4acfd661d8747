import QtQuick
import Quillmere

/// The heads of the process monitor's columns. Those that it can be sorted by are pressed to do so.
Item {
    id: root

    required property ProcessColumns columns
    property int sortField: SortField.Cpu

    signal sortRequested(int field)

    /// Room for the chevron, so that a head stands over the ends of its figures.
    readonly property int chevronRoom: 18

    implicitHeight: 30

    TableHeader {
        x: root.columns.nameX
        width: Math.min(implicitWidth + root.chevronRoom, root.columns.nameWidth)
        text: Texts.localized("resource.processName")
        sorted: root.sortField === SortField.Name
        ascending: true

        onClicked: root.sortRequested(SortField.Name)
    }

    TableHeader {
        x: root.columns.cpuEnd - root.columns.figureWidth
        width: root.columns.figureWidth + (sorted ? root.chevronRoom : 0)
        alignment: Qt.AlignRight
        text: Texts.localized("dashboard.topCPU")
        sorted: root.sortField === SortField.Cpu

        onClicked: root.sortRequested(SortField.Cpu)
    }

    TableHeader {
        x: root.columns.memoryEnd - root.columns.figureWidth + root.chevronRoom
        width: root.columns.figureWidth - (sorted ? 0 : root.chevronRoom)
        alignment: Qt.AlignRight
        text: Texts.localized("dashboard.topRAM")
        sorted: root.sortField === SortField.Memory

        onClicked: root.sortRequested(SortField.Memory)
    }

    ColumnHeading {
        x: root.columns.networkEnd - root.columns.networkWidth + root.chevronRoom
        width: root.columns.networkWidth - root.chevronRoom
        horizontalAlignment: Text.AlignRight
        text: Texts.localized("resource.network")
    }

    ColumnHeading {
        x: root.columns.networkEnd
        width: root.columns.actionsWidth - 4
        horizontalAlignment: Text.AlignRight
        text: Texts.localized("resource.actions")
    }

    Divider {
        x: Theme.cardPadding
        anchors.bottom: parent.bottom
        width: parent.width - 2 * Theme.cardPadding
    }
}
