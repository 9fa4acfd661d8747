import QtQuick
import Quillmere
import Quillmere.Support

/// A running application: its load, its memory, and what can be done with it.
Item {
    id: root

    required property int pid
    required property string name
    required property string icon
    required property string cpuText
    required property bool isCpuHigh
    required property string memoryText
    required property string networkText
    required property bool isNetworkHigh
    required property bool isInternetBlocked
    required property bool canQuit
    required property ProcessColumns columns

    property bool last: false

    readonly property bool marked: pointer.hovered || trafficButton.visualFocus || quitButton.visualFocus

    signal trafficToggled
    signal quitRequested

    implicitHeight: 40

    Accessible.role: Accessible.ListItem
    Accessible.name: name + ", " + Texts.localized("dashboard.topCPU") + " " + cpuText
        + ", " + Texts.localized("dashboard.topRAM") + " " + memoryText
        + ", " + Texts.localized("resource.network") + " " + networkText

    HoverHandler {
        id: pointer
    }

    RowHighlight {
        shown: root.marked
        radius: Theme.controlRadius
        margin: 1
    }

    Image {
        x: root.columns.iconX
        anchors.verticalCenter: parent.verticalCenter
        width: 26
        height: 26
        sourceSize.width: 26
        sourceSize.height: 26
        source: ApplicationIcons.source(root.icon, root.name)

        Accessible.ignored: true
    }

    ElidingText {
        x: root.columns.nameX
        width: root.columns.nameWidth
        height: parent.height
        text: root.name
        weight: Font.Medium

        Accessible.ignored: true
    }

    Figure {
        x: root.columns.cpuEnd - width
        anchors.verticalCenter: parent.verticalCenter
        text: root.cpuText
        color: root.isCpuHigh ? Theme.orangeText : Theme.text

        Accessible.ignored: true
    }

    Figure {
        x: root.columns.memoryEnd - width
        anchors.verticalCenter: parent.verticalCenter
        text: root.memoryText

        Accessible.ignored: true
    }

    Figure {
        x: root.columns.networkEnd - width
        anchors.verticalCenter: parent.verticalCenter
        text: root.networkText
        color: root.isNetworkHigh ? Theme.blue : Theme.text

        Accessible.ignored: true
    }

    Row {
        x: root.columns.actionsEnd - width
        anchors.verticalCenter: parent.verticalCenter
        spacing: 6

        IconButton {
            id: trafficButton

            kind: root.isInternetBlocked ? IconButton.Alarming : root.marked ? IconButton.Framed : IconButton.Plain
            symbol: root.isInternetBlocked ? "block" : "globe"
            accessibleName: Texts.localized(root.isInternetBlocked ? "resource.unblockInternet"
                                                                    : "resource.blockInternet")

            onClicked: root.trafficToggled()
        }

        IconButton {
            id: quitButton

            visible: root.canQuit
            kind: root.marked ? IconButton.Framed : IconButton.Plain
            symbol: "clear"
            accessibleName: Texts.localized("resource.forceQuit")

            onClicked: root.quitRequested()
        }

        LockedMark {
            visible: !root.canQuit
        }
    }

    Divider {
        x: root.columns.nameX
        y: parent.height - 1
        width: parent.width - x - Theme.cardPadding
        visible: !root.last && !root.marked
    }
}
