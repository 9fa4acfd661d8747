import QtQuick
import QtQuick.Templates as T
import Quillmere

/// A menu of ContextMenuItem.
T.Menu {
    id: root

    implicitWidth: Math.max(180, contentItem.implicitWidth + leftPadding + rightPadding)
    implicitHeight: contentItem.implicitHeight + topPadding + bottomPadding
    margins: 8
    padding: 5
    focus: true

    delegate: ContextMenuItem {}

    background: MenuSurface {}

    contentItem: ListView {
        implicitWidth: {
            let widest = 0;
            for (let i = 0; i < root.count; ++i)
                widest = Math.max(widest, root.itemAt(i).implicitWidth);
            return widest;
        }
        implicitHeight: contentHeight
        model: root.contentModel
        currentIndex: root.currentIndex
        interactive: false
    }
}
