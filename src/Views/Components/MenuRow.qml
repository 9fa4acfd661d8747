import QtQuick
import QtQuick.Templates as T
import Quillmere

/// A line of a picker's menu; the chosen one bears a check.
T.ItemDelegate {
    id: root

    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    implicitHeight: 30
    leftPadding: 30
    rightPadding: 14

    Accessible.role: Accessible.MenuItem
    Accessible.name: text
    Accessible.onPressAction: {
        if (root.enabled)
            root.clicked();
    }

    background: MenuHighlight {
        shown: root.highlighted || root.hovered
        checked: root.checkable && root.checked
    }

    contentItem: BodyText {
        text: root.text
        weight: root.checked ? Font.DemiBold : Font.Medium
        elide: Text.ElideMiddle

        Accessible.ignored: true
    }
}
