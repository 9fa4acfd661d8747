import QtQuick
import Quillmere

/// Where the columns of the startup items stand in a list of `width`.
QtObject {
    property real width: 0

    readonly property int gap: 16
    readonly property int moreWidth: 30

    readonly property real nameX: Theme.cardPadding
    readonly property real nameWidth: typeX - gap - nameX
    readonly property real typeX: riskX - gap - typeWidth
    readonly property int typeWidth: 120
    readonly property real riskX: statusX - gap - riskWidth
    readonly property int riskWidth: 116
    readonly property real statusX: moreX - gap - statusWidth
    readonly property int statusWidth: 64
    readonly property real moreX: width - Theme.cardPadding - moreWidth
}
