import QtQuick
import Quillmere

/// One entry of the sidebar: a header, a destination, or the promotion.
FocusScope {
    id: root

    required property int index
    required property int kind
    required property string text
    required property string iconName
    required property int tab
    property ViewModelFactory viewModels: null
    property bool isSelected: false

    readonly property bool isDestination: kind === SidebarListModel.Destination

    signal chosen

    implicitHeight: isDestination ? row.implicitHeight
                                  : kind === SidebarListModel.Header ? header.implicitHeight : promotion.implicitHeight

    // The first header stands where the window's title bar would.
    WindowDragArea {
        anchors.fill: parent
        enabled: root.index === 0
    }

    SidebarSection {
        id: header

        x: 10
        width: parent.width - 20
        visible: root.kind === SidebarListModel.Header
        title: root.text
        first: root.index === 0
    }

    SidebarRow {
        id: row

        x: 10
        width: parent.width - 20
        visible: root.isDestination
        focus: root.isDestination
        text: root.text
        symbol: root.iconName
        selected: root.isSelected

        onClicked: root.chosen()
    }

    Loader {
        id: promotion

        width: parent.width
        active: root.kind === SidebarListModel.Promotion

        sourceComponent: AdvertisementBannerView {
            viewModels: root.viewModels // qmllint disable unqualified
        }
    }
}
