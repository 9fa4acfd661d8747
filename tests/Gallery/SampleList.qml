import QtQuick
import Quillmere

/// A cleanup screen with made-up rows.
Item {
    id: root

    property alias focusedRow: third

    ScreenHeader {
        id: header

        width: parent.width
        title: Texts.localized("nav.safeCleanup")

        SelectedFigure {
            figure: "4.82 GB"
            caption: "selected"
        }
    }

    WindowButtons {
        anchors.right: parent.right
        anchors.rightMargin: 12
        y: 12
    }

    ScrollArea {
        y: Theme.firstCardY
        width: parent.width
        height: parent.height - y - bar.height
        contentHeight: panel.height + 24

        Panel {
            id: panel

            x: Theme.screenMargin
            width: parent.width - 2 * Theme.screenMargin
            height: rows.height + 8

            Column {
                id: rows

                y: 4
                width: parent.width

                CategoryRow {
                    width: parent.width
                    name: "User Cache"
                    description: "Application caches in your user folder"
                    iconName: "folder"
                    countText: "128 items"
                    sizeText: "3.17 GB"
                    selected: true
                    expanded: root.width > 800
                    items: [
                        {name: "com.videolabs.frame-preview-cache-shared-by-all-projects-2026-11-20T18-42-07Z-session-0f9a2c-and-longer", size: "1.2GB"},
                        {name: "mozilla.firefox", size: "684.3MB"},
                        {name: "thumbnails", size: "412.9MB"},
                        {name: "fontconfig", size: "96.1MB"},
                        {name: "mesa_shader_cache", size: "58.4MB"},
                    ]
                    moreText: "123 more..."
                }

                CategoryRow {
                    width: parent.width
                    name: "Android Studio and JetBrains caches"
                    description: "IDE indexes, logs and temporary data. Projects and settings are kept."
                    iconName: "brain.head.profile"
                    countText: "46 items"
                    sizeText: "212.4 MB"
                    riskLevel: RiskLevel.Medium
                    selected: true
                }

                CategoryRow {
                    id: third

                    width: parent.width
                    name: "Smartphone simulators and system images of any kind"
                    description: "Virtual devices, their user data and system images. Removing these requires a new download of every image."
                    iconName: "iphone.gen3"
                    countText: "31 items"
                    sizeText: "111.44 GB"
                    riskLevel: RiskLevel.Dangerous
                    selected: true
                }

                CategoryRow {
                    width: parent.width
                    name: "Installed developer tools"
                    description: "Read-only inventory of IDEs, SDKs and runtimes on this computer, for information."
                    iconName: "shippingbox"
                    countText: "19 items"
                    sizeText: "388.7 MB"
                    available: false
                    keepText: Texts.localized("developer.installed.keep")
                    last: true
                }
            }
        }
    }

    ButtonBar {
        id: bar

        anchors.bottom: parent.bottom
        width: parent.width

        ActionButton { text: Texts.localized("cleanup.selectAll") }
        ActionButton { text: Texts.localized("cleanup.deselectAll") }

        trailing: ActionButton {
            text: Texts.localized("cleanup.clean")
            symbol: "broom"
            kind: ActionButton.Primary
            size: ActionButton.Large
        }
    }
}
