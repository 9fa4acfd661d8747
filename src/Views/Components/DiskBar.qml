import QtQuick
import Quillmere

/// How full a disk is, from 0 to 1. The colours warm with its level.
ProgressBar {
    property int level: LoadLevel.Normal

    implicitHeight: 20
    start: [Theme.diskStart, Theme.orange, Theme.red][level]
    end: [Theme.diskEnd, Theme.yellow, Theme.orange][level]
}
