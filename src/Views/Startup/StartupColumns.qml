import QtQuick
import Quillmere

/// Where the columns of the startup items stand in a list of `width`.
QtObject {
    property real width: 0

    readonly property int gap: 16
    readonly property int moreWidth: 30
    readonly property real room: width - 2 * Theme.cardPadding

    readonly property real nameX: Theme.cardPadding
    readonly property real nameWidth: typeX - gap - nameX
    readonly property real typeX: riskX - gap - typeWidth
    readonly property real typeWidth: Math.round(Math.min(170, room * 0.2))
    readonly property real riskX: statusX - gap - riskWidth
    readonly property real riskWidth: Math.round(Math.min(140, room * 0.2))
    readonly property real statusX: moreX - gap - statusWidth
    readonly property real statusWidth: Math.round(Math.min(100, room * 0.14))
    readonly property real moreX: width - Theme.cardPadding - moreWidth
}
