import QtQuick
import QtQuick.Templates as T
import Quillmere

/// What all buttons have in common: Space and Enter, the large hit area, and the press of assistive tools.
T.AbstractButton {
    id: root

    /// What assistive tools call it.
    property string accessibleName: text

    function pressByKey(event: var) {
        // A key that is held down was meant for the button that stood here first.
        if (!event.isAutoRepeat)
            clicked();
    }

    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    implicitHeight: implicitContentHeight + topPadding + bottomPadding
    containmentMask: hitArea
    hoverEnabled: true

    Accessible.name: accessibleName
    // Calling click() from here has no effect; emitting its signal has.
    Accessible.onPressAction: {
        if (root.enabled)
            root.clicked();
    }

    Keys.onReturnPressed: event => pressByKey(event)
    Keys.onEnterPressed: event => pressByKey(event)

    HitArea {
        id: hitArea
    }
}
