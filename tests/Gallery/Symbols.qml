import QtQuick
import QtQuick.Layouts
import Quillmere

/// The contact sheet: every drawing at 16, 24 and 48 pixels.
Rectangle {
    id: root

    readonly property var names: symbolNames

    color: Theme.canvas

    Grid {
        x: 20
        y: 20
        columns: 9
        spacing: 6

        Repeater {
            model: root.names

            Rectangle {
                required property string modelData

                width: 112
                height: 100
                radius: 10
                color: Theme.card
                border.width: 1
                border.color: Theme.cardBorder

                Row {
                    anchors.horizontalCenter: parent.horizontalCenter
                    y: 12
                    spacing: 8

                    Repeater {
                        model: [16, 24, 48]

                        Symbol {
                            required property int modelData

                            anchors.verticalCenter: parent.verticalCenter
                            name: parent.parent.modelData
                            size: modelData
                            color: modelData === 24 ? Theme.accent : Theme.text
                        }
                    }
                }

                BodyText {
                    x: 4
                    y: 66
                    width: parent.width - 8
                    height: 30
                    text: parent.modelData
                    size: 9
                    color: Theme.textTertiary
                    wrapMode: Text.WrapAnywhere
                    horizontalAlignment: Text.AlignHCenter
                    verticalAlignment: Text.AlignTop
                }
            }
        }
    }
}
