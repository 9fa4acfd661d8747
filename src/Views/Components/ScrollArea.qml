import QtQuick
import QtQuick.Templates as T
import Quillmere

/// A scrolling area with a thin bar over its right edge. The arrow, page, Home and End keys scroll it.
Flickable {
    id: root

    function scrollTo(position: real) {
        contentY = Math.max(0, Math.min(position, contentHeight - height));
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
            [Qt.Key_Home]: 0,
            [Qt.Key_End]: contentHeight,
        };
        if (contentHeight > height && event.key in steps) {
            scrollTo(steps[event.key]);
            event.accepted = true;
        }
    }

    T.ScrollBar.vertical: ScrollIndicatorBar {}
}
