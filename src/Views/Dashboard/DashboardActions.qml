import QtQuick
import Quillmere

/// The three wide actions in a row.
Row {
    id: root

    readonly property real buttonWidth: (width - 2 * spacing) / 3
    readonly property real buttonHeight: Math.max(clean.implicitHeight, boost.implicitHeight, detailed.implicitHeight)

    signal cleanCachesRequested
    signal fastBoostRequested
    signal detailedCleanupRequested

    spacing: Theme.tileGap

    HeroButton {
        id: clean

        width: root.buttonWidth
        height: root.buttonHeight
        primary: true
        text: Texts.localized("dashboard.cleanCaches")
        symbol: "broom"

        onClicked: root.cleanCachesRequested()
    }

    HeroButton {
        id: boost

        width: root.buttonWidth
        height: root.buttonHeight
        text: Texts.localized("dashboard.fastBoost")
        symbol: "bolt"

        onClicked: root.fastBoostRequested()
    }

    HeroButton {
        id: detailed

        width: root.buttonWidth
        height: root.buttonHeight
        text: Texts.localized("dashboard.detailedCleanup")
        symbol: "sliders"

        onClicked: root.detailedCleanupRequested()
    }
}
