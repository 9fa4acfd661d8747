import QtQuick
import QtQuick.Templates as T
import Quillmere

/// What sheets, alerts and the wizard have in common: a surface in the middle of a dimmed window, which keeps the
/// keyboard inside and asks by `dismissed` when Escape is pressed. The window itself can still be moved, resized and
/// hidden: what lies under a modal popup is out of reach, so it brings the window's edges and buttons along. The owner
/// shows and hides it by `visible`.
T.Popup {
    id: root

    property string accessibleName
    property real surfaceWidth: 0
    property real surfaceHeight: 0
    property alias surfaceRadius: surface.radius
    property alias elevation: surface.elevation
    /// What lies on the surface, which is as large as that.
    default property alias surfaceData: slot.data
    /// Takes the keyboard first. By default the first control inside.
    property Item initialFocus: null
    property bool hasTakenFocus: false
    property real rise: 0

    readonly property FocusMemory before: FocusMemory {}
    readonly property int edge: 22
    readonly property real roomWidth: parent ? parent.width - 2 * edge : 0
    readonly property real roomHeight: parent ? parent.height - 2 * edge : 0

    signal dismissed()

    function takeFocus() {
        hasTakenFocus = true;
        const first = initialFocus !== null ? initialFocus : slot.nextItemInFocusChain(true);
        first.forceActiveFocus(before.reason);
    }

    // A row that has gone meanwhile leaves the keyboard to its list.
    function giveFocusBack() {
        let item = before.item;
        while (item !== null && !(item.visible && (item === before.item || item.activeFocusOnTab)))
            item = item.parent;
        if (item !== null)
            before.giveTo(item);
    }

    parent: T.Overlay.overlay
    width: parent ? parent.width : 0
    height: parent ? parent.height : 0
    modal: true
    focus: true
    closePolicy: T.Popup.NoAutoClose

    onAboutToShow: {
        hasTakenFocus = false;
        before.remember(parent.Window.activeFocusItem);
    }
    // At once, so that whoever goes on by Tab while it still fades in is not taken back. One that is shown anew before it
    // has gone was visible all the time.
    onVisibleChanged: {
        if (visible)
            takeFocus();
    }
    onOpened: {
        if (!hasTakenFocus)
            takeFocus();
    }
    onClosed: {
        giveFocusBack();
        before.item = null;
    }

    enter: Transition {
        NumberAnimation {
            property: "opacity"
            from: 0
            to: 1
            duration: Theme.sheetInDuration
            easing.type: Easing.OutCubic
        }

        NumberAnimation {
            property: "rise"
            from: Theme.reducedMotion ? 0 : 8
            to: 0
            duration: Theme.sheetInDuration
            easing.type: Easing.OutCubic
        }
    }

    exit: Transition {
        NumberAnimation {
            property: "opacity"
            from: 1
            to: 0
            duration: Theme.sheetOutDuration
            easing.type: Easing.InCubic
        }
    }

    T.Overlay.modal: Rectangle {
        color: Theme.dim

        Behavior on opacity {
            NumberAnimation {
                duration: Theme.sheetOutDuration
            }
        }
    }

    contentItem: FocusScope {
        focus: true

        Keys.onEscapePressed: root.dismissed()

        WindowDragArea {
            width: parent.width
            height: Theme.windowBarHeight
        }

        RaisedSurface {
            id: surface

            x: Math.round((parent.width - width) / 2)
            y: Math.round((parent.height - height) / 2 + root.rise)
            width: root.surfaceWidth
            height: root.surfaceHeight

            Accessible.role: Accessible.Dialog
            Accessible.name: root.accessibleName

            Item {
                id: slot

                anchors.fill: parent
            }
        }

        WindowButtons {
            anchors.right: parent.right
            anchors.rightMargin: 10
            y: 12
            color: Theme.dimmedSymbol
            ringColor: Theme.dimmedFocusRing
        }

        WindowGrips {
            anchors.fill: parent
        }
    }
}
