import QtQuick
import QtQuick.Templates as T

/// What all rows that are pressed have in common. Like PressableControl, but a list item to assistive tools, which take
/// that from the template whatever the QML says. It stands edge to edge with others, so it can be hit where it is drawn.
T.ItemDelegate {
    id: root

    /// What assistive tools call it.
    property string accessibleName: text

    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    implicitHeight: implicitContentHeight + topPadding + bottomPadding
    hoverEnabled: true
    focusPolicy: Qt.StrongFocus

    Accessible.name: accessibleName
    // Calling click() from here has no effect; emitting its signal has.
    Accessible.onPressAction: {
        if (root.enabled)
            root.clicked();
    }

    Keys.onReturnPressed: event => {
        if (!event.isAutoRepeat)
            clicked();
    }
    Keys.onEnterPressed: event => {
        if (!event.isAutoRepeat)
            clicked();
    }
}
