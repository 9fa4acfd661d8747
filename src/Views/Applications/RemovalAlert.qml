import QtQuick
import Quillmere

/// Asks before something of an application is removed, and warns while that application runs.
AlertDialog {
    id: root

    property bool isRunning: false

    destructive: true
    symbol: "trash"
    cancelText: Texts.localized("common.cancel")

    WarningBanner {
        width: parent.width
        visible: root.isRunning
        height: visible ? implicitHeight : 0
        symbol: "play.circle.fill"
        message: Texts.localized("control.applicationRunning")
    }
}
