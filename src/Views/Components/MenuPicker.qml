pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Quillmere

/// One of many choices, shown in a menu. `activated` tells of the user's choice.
T.ComboBox {
    id: root

    property string accessibleName
    /// The choice that the owner holds. It stands whatever becomes of the texts.
    property int chosenIndex: 0

    currentIndex: chosenIndex

    // A new list of texts, as of another language, has Qt begin with the first.
    onModelChanged: currentIndex = Qt.binding(() => chosenIndex)

    implicitWidth: Math.min(360, widest.width + 48)
    implicitHeight: 32
    leftPadding: 12
    rightPadding: 32
    font.family: Theme.textFamily
    font.pixelSize: 13
    font.weight: Font.Medium
    hoverEnabled: true
    containmentMask: hitArea

    Accessible.role: Accessible.ComboBox
    Accessible.name: accessibleName === "" ? displayText : accessibleName + ", " + displayText
    Accessible.onPressAction: {
        if (root.enabled)
            root.popup.open();
    }

    Keys.onReturnPressed: popup.open()
    Keys.onEnterPressed: popup.open()

    HitArea {
        id: hitArea
    }

    TextMetrics {
        id: widest

        font: root.font
        text: {
            let longest = "";
            for (let i = 0; i < root.count; ++i) {
                if (root.textAt(i).length > longest.length)
                    longest = root.textAt(i);
            }
            return longest;
        }
    }

    background: Rectangle {
        radius: Theme.controlRadius
        color: !root.enabled ? Theme.track : root.pressed || root.popup.visible
                               ? Theme.quietPressed : root.hovered ? Theme.quietHover : Theme.quiet
        border.width: root.enabled ? 1 : 0
        border.color: Theme.quietBorder

        Behavior on color {
            ColorAnimation {
                duration: Theme.colorDuration
            }
        }

        FocusRing {
            shown: root.visualFocus
        }
    }

    contentItem: ElidingText {
        text: root.displayText
        weight: Font.Medium
        color: root.enabled ? Theme.text : Theme.tint(Theme.textTertiary, 0.75)
        elide: Text.ElideMiddle

        Accessible.ignored: true
    }

    indicator: Symbol {
        x: root.width - width - 9
        y: (root.height - height) / 2
        name: "menu.arrows"
        size: 16
        color: root.enabled ? Theme.textSecondary : Theme.tint(Theme.textTertiary, 0.5)
    }

    delegate: MenuRow {
        required property int index

        width: ListView.view ? ListView.view.width : 0
        text: root.textAt(index)
        checkable: true
        checked: index === root.currentIndex
        highlighted: index === root.highlightedIndex
    }

    popup: T.Popup {
        y: root.height + 4
        width: Math.max(root.width, Math.min(420, widest.width + 64))
        height: Math.min(contentItem.implicitHeight + topPadding + bottomPadding, 320)
        margins: 8
        padding: 5

        background: MenuSurface {}

        contentItem: ListView {
            clip: true
            implicitHeight: contentHeight
            model: root.delegateModel
            currentIndex: root.highlightedIndex
            boundsBehavior: Flickable.StopAtBounds
        }
    }
}
