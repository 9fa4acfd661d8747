import QtQuick
import Quillmere

/// How full a disk is, from 0 to 1. The colours warm above 80 % and again above 90 %.
ProgressBar {
    implicitHeight: 20
    start: value > 0.9 ? Theme.red : value > 0.8 ? Theme.orange : Theme.diskStart
    end: value > 0.9 ? Theme.orange : value > 0.8 ? Theme.yellow : Theme.diskEnd
}
