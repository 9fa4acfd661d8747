import QtQuick
import Quillmere

/// Where the columns of the history stand in a list of `width`.
QtObject {
    property real width: 0

    readonly property real room: width - 2 * Theme.cardPadding - chevronWidth
    readonly property int chevronWidth: 30
    readonly property int gap: 16

    readonly property real dateX: Theme.cardPadding
    readonly property real dateWidth: Math.round(room * 0.28) - gap
    readonly property real typeX: dateX + dateWidth + gap
    readonly property real typeWidth: Math.round(room * 0.31) - gap
    readonly property real sizeX: typeX + typeWidth + gap
    readonly property real sizeWidth: Math.round(room * 0.18) - gap
    readonly property real statusX: sizeX + sizeWidth + 2 * gap
    readonly property real statusWidth: width - Theme.cardPadding - chevronWidth - statusX
}
