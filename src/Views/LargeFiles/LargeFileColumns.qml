import QtQuick
import Quillmere

/// Where the columns of the large files stand in a list of `width`. Sizes end at the right edge of theirs.
QtObject {
    property real width: 0

    readonly property bool isNarrow: width < Theme.narrowBelow
    readonly property int sizeWidth: 96
    readonly property int dateWidth: isNarrow ? 134 : 150
    readonly property int actionsWidth: 34
    readonly property int gap: isNarrow ? 26 : 32

    readonly property real iconX: Theme.cardPadding
    readonly property real nameX: iconX + 52
    readonly property real actionsX: width - Theme.cardPadding - actionsWidth + 4
    readonly property real dateX: actionsX - 8 - dateWidth
    readonly property real sizeEnd: dateX - gap
    readonly property real nameWidth: sizeEnd - sizeWidth - gap / 2 - nameX
}
