import QtQuick
import Quillmere

/// Where the columns of the process monitor stand in a list of `width`. Figures end at the right edge of theirs.
QtObject {
    property real width: 0

    readonly property bool isNarrow: width < Theme.narrowBelow
    readonly property real figureWidth: isNarrow ? 108 : 118
    readonly property real networkWidth: isNarrow ? 74 : 104
    readonly property real actionsWidth: isNarrow ? 84 : 110

    readonly property real iconX: Theme.cardPadding
    readonly property real nameX: Theme.cardPadding + 38
    readonly property real actionsEnd: width - Theme.cardPadding
    readonly property real networkEnd: actionsEnd - actionsWidth
    readonly property real memoryEnd: networkEnd - networkWidth
    readonly property real cpuEnd: memoryEnd - figureWidth
    readonly property real nameWidth: cpuEnd - figureWidth - nameX + 12
}
