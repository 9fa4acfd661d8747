import QtQuick
import Quillmere

/// The header above a group of sidebar rows.
Item {
    id: root

    property string title
    property bool first: false

    implicitWidth: 199
    implicitHeight: first ? 24 : 29

    SectionText {
        x: 10
        anchors.bottom: parent.bottom
        anchors.bottomMargin: 5
        width: parent.width - 20
        text: root.title
        elide: Text.ElideRight
        font.letterSpacing: 0.2

        Accessible.role: Accessible.Heading
    }
}
