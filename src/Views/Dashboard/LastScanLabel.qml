import QtQuick
import Quillmere

/// When the last safe scan ended.
Row {
    id: root

    property string dateText

    spacing: 6

    Accessible.role: Accessible.StaticText
    Accessible.name: caption.text + " " + dateText

    Symbol {
        anchors.verticalCenter: parent.verticalCenter
        name: "clock"
        size: 16
        color: Theme.textTertiary
    }

    CaptionText {
        id: caption

        anchors.verticalCenter: parent.verticalCenter
        text: Texts.localized("dashboard.lastScan")
        color: Theme.textTertiary

        Accessible.ignored: true
    }

    CaptionText {
        anchors.verticalCenter: parent.verticalCenter
        text: root.dateText
        weight: Font.Medium

        Accessible.ignored: true
    }
}
