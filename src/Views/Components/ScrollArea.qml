import QtQuick
import QtQuick.Templates as T
import Quillmere

/// A scrolling area with a thin bar over its right edge. The arrow, page, Home and End keys scroll it.
Flickable {
    id: root

    readonly property T.Control focusedControl: Window.activeFocusItem as T.Control

    function scrollTo(position: real) {
        contentY = Math.max(-topMargin, Math.min(position, contentHeight + bottomMargin - height));
    }

    /// Brings @p item into sight, with some room around it.
    function reveal(item: Item) {
        const room = 24;
        const top = item.mapToItem(contentItem, 0, 0).y;
        if (top - room < contentY)
            scrollTo(top - room);
        else if (top + item.height + room > contentY + height)
            scrollTo(top + item.height + room - height);
    }

    // Only what the keyboard comes to: under the pointer nothing must move.
    onFocusedControlChanged: {
        let above = focusedControl !== null && focusedControl.visualFocus ? focusedControl.parent : null;
        while (above !== null && above !== contentItem)
            above = above.parent;
        if (above !== null)
            reveal(focusedControl);
    }

    clip: true
    boundsBehavior: Flickable.StopAtBounds
    contentWidth: width
    flickableDirection: Flickable.VerticalFlick

    Keys.onPressed: event => {
        const steps = {
            [Qt.Key_Down]: contentY + 40,
            [Qt.Key_Up]: contentY - 40,
            [Qt.Key_PageDown]: contentY + height * 0.9,
            [Qt.Key_PageUp]: contentY - height * 0.9,
            [Qt.Key_Home]: -topMargin,
            [Qt.Key_End]: contentHeight + bottomMargin,
        };
        if (topMargin + contentHeight + bottomMargin > height && event.key in steps) {
            scrollTo(steps[event.key]);
            event.accepted = true;
        }
    }

    T.ScrollBar.vertical: ScrollIndicatorBar {}
}
