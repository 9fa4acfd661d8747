pragma ComponentBehavior: Bound

import QtQuick
import Quillmere

/// The files and folders of the user's that belong to the application.
CardView {
    id: root

    required property ApplicationsViewModel viewModel

    readonly property list<string> names: viewModel.selected.fileNames // qmllint disable type
    readonly property list<string> paths: viewModel.selected.filePaths // qmllint disable type

    title: Texts.localized("applications.leftovers")
    icon: "doc.text.magnifyingglass"

    Column {
        width: parent.width

        BodyText {
            width: parent.width
            visible: root.names.length === 0
            text: Texts.localized("applications.noLeftovers")
            color: Theme.textSecondary
            wrapMode: Text.Wrap
        }

        Repeater {
            model: root.names.length

            Item {
                id: line

                required property int index

                readonly property string name: root.names[index] ?? ""
                readonly property string path: root.paths[index] ?? ""

                width: parent.width
                height: 46

                Accessible.role: Accessible.ListItem
                Accessible.name: name + ", " + path

                Symbol {
                    y: 6
                    name: "doc"
                    size: 18
                    color: Theme.accent
                }

                ElidingText {
                    x: 30
                    y: 4
                    width: parent.width - x
                    height: 18
                    text: line.name
                    weight: Font.DemiBold
                    elide: Text.ElideMiddle

                    Accessible.ignored: true
                }

                ElidingText {
                    x: 30
                    y: 23
                    width: parent.width - x
                    height: 16
                    size: 12
                    text: line.path
                    color: Theme.textSecondary
                    elide: Text.ElideMiddle

                    Accessible.ignored: true
                }
            }
        }
    }
}
