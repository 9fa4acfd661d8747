import QtQuick
import Quillmere

/// The head of a column that is pressed to sort by it; the sorted one bears a chevron.
PressableControl {
    id: root

    property bool sorted: false
    property bool ascending: false
    property int alignment: Qt.AlignLeft

    readonly property real chevronRoom: sorted ? 18 : 0

    implicitWidth: label.implicitWidth + chevronRoom
    implicitHeight: 30

    Accessible.description: sorted ? Texts.localized(ascending ? "control.sortedAscending" : "control.sortedDescending") : ""

    background: Item {
        FocusRing {
            shown: root.visualFocus
            controlRadius: 6
            gap: 0
        }
    }

    BodyText {
        id: label

        readonly property real room: root.width - root.chevronRoom

        x: root.alignment === Qt.AlignRight ? room - width : 0
        width: Math.min(Math.ceil(implicitWidth), room)
        height: parent.height
        text: root.text
        size: 12
        weight: Font.DemiBold
        color: root.hovered ? Theme.text : Theme.textTertiary
        elide: Text.ElideRight

        Accessible.ignored: true
    }

    Symbol {
        anchors.verticalCenter: parent.verticalCenter
        x: label.x + label.width + 3
        visible: root.sorted
        name: root.ascending ? "chevron.up" : "chevron.down"
        size: 14
        color: Theme.textTertiary
    }
}
