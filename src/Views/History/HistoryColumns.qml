import QtQuick
import Quillmere

/// Where the columns of the history stand in a list of `width`. Where that is narrow, figures and states get just what they
/// need, and dates and kinds share what is left.
QtObject {
    property real width: 0

    readonly property bool isNarrow: width < Theme.narrowBelow
    readonly property real room: width - 2 * Theme.cardPadding - chevronWidth
    readonly property int chevronWidth: 30
    readonly property int gap: 16
    readonly property int leastSizeWidth: 72
    readonly property int leastStatusWidth: 108
    readonly property real leftForWords: room - 4 * gap - leastSizeWidth - leastStatusWidth

    readonly property real dateX: Theme.cardPadding
    readonly property real dateWidth: isNarrow ? Math.floor(leftForWords / 2) : Math.round(room * 0.28) - gap
    readonly property real typeX: dateX + dateWidth + gap
    readonly property real typeWidth: isNarrow ? Math.ceil(leftForWords / 2) : Math.round(room * 0.31) - gap
    readonly property real sizeX: typeX + typeWidth + gap
    readonly property real sizeWidth: isNarrow ? leastSizeWidth : Math.round(room * 0.18) - gap
    readonly property real statusX: sizeX + sizeWidth + 2 * gap
    readonly property real statusWidth: dateX + room - statusX
}
