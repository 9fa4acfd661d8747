import QtQuick
import Quillmere

/// The chosen application: what it is, its traffic, what belongs to it, and at the foot what removes it.
Item {
    id: root

    required property ApplicationsViewModel viewModel

    readonly property string name: viewModel.selected.name

    signal uninstallRequested
    signal clearRequested

    onNameChanged: scroller.scrollTo(0)

    ScrollArea {
        id: scroller

        // Room for the shadows of the cards, and some clear of the buttons.
        x: -8
        y: -8
        width: parent.width + 16
        height: foot.y - 4
        topMargin: 8
        bottomMargin: Theme.cardGap
        contentHeight: cards.height

        Column {
            id: cards

            x: 8
            width: root.width
            spacing: Theme.cardGap

            Panel {
                width: parent.width
                height: Math.max(88, words.height + 36)

                ApplicationIcon {
                    id: picture

                    x: Theme.cardPadding
                    anchors.verticalCenter: parent.verticalCenter
                    side: 52
                    icon: root.viewModel.selected.icon
                    name: root.name
                }

                Column {
                    id: words

                    x: picture.x + picture.width + 16
                    anchors.verticalCenter: parent.verticalCenter
                    width: sizeFigure.x - x - 16
                    spacing: 3

                    SheetTitleText {
                        width: parent.width
                        text: root.name
                        size: 18
                        horizontalAlignment: Text.AlignLeft
                        maximumLineCount: 2
                        elide: Text.ElideRight
                        wrapMode: Text.Wrap
                    }

                    ElidingText {
                        width: parent.width
                        size: 12
                        text: root.viewModel.selected.versionText
                        color: Theme.textSecondary
                    }
                }

                Figure {
                    id: sizeFigure

                    anchors.right: parent.right
                    anchors.rightMargin: Theme.cardPadding
                    anchors.verticalCenter: parent.verticalCenter
                    text: root.viewModel.selected.sizeText
                    size: 18
                    weight: Font.DemiBold
                    color: Theme.accent
                }
            }

            TrafficCard {
                width: parent.width
                viewModel: root.viewModel
            }

            LeftoversCard {
                width: parent.width
                viewModel: root.viewModel
            }
        }
    }

    RemovalButtons {
        id: foot

        y: parent.height - height
        width: parent.width
        viewModel: root.viewModel

        onUninstallRequested: root.uninstallRequested()
        onClearRequested: root.clearRequested()
    }
}
