import QtQuick
import Quillmere

/// Covers a screen while its work runs: what is done, with what, how far, and the way to stop it. Fills its parent and
/// holds the keyboard while `visible`, unless that is beside the screen, as in a sidebar, where it may stay; Escape is
/// Cancel. It decides nothing: its owner shows and hides it.
FocusScope {
    id: root

    property string title
    property string message
    /// From 0.0 to 1.0; below 0 while nobody knows how far it is, which shows no bar.
    property real progress: 0
    /// False for work that cannot be stopped: the button is dimmed, and Escape does nothing.
    property bool cancellable: true
    property string symbol: "search"
    /// True for a sentence, which wraps; false for a path or a name, which is shortened in its middle.
    property bool isSentence: false

    signal cancelled()

    property bool holdsFocus: false

    readonly property FocusMemory before: FocusMemory {}
    readonly property Item focusNow: Window.activeFocusItem

    function isIn(ancestor: Item, item: Item): bool {
        for (let at = item; at !== null; at = at.parent) {
            if (at === ancestor)
                return true;
        }
        return false;
    }

    /// The keyboard is nowhere, at something covered, or at no more than the window or a part of it that holds us.
    function mayTakeFocus(): bool {
        return focusNow === null || isIn(root.parent, focusNow) || isIn(focusNow, root);
    }

    /// Takes the keyboard from what is covered, and from nothing else.
    function guardFocus() {
        if (visible && !isIn(root, focusNow) && mayTakeFocus())
            takeFocus();
    }

    function takeFocus() {
        holdsFocus = true;
        const now = Window.activeFocusItem;
        if (now !== cancelButton && now !== root)
            before.remember(now);
        else
            before.rememberHow(now);
        if (cancellable)
            cancelButton.forceActiveFocus(before.reason);
        else
            root.forceActiveFocus(before.reason);
    }

    /// What was rebuilt with the work is nowhere on the screen, even where it has not been destroyed yet.
    function canTakeFocusBack(item: Item): bool {
        return isIn(root.parent, item) && item.visible && item.enabled && item.activeFocusOnTab;
    }

    /// What had the keyboard may have gone with the work, or nothing had it yet. Then Tab begins with the first control of
    /// the screen, which shows the keyboard's mark at once only to whoever uses it.
    function giveFocusBack() {
        const isOurs = holdsFocus && mayTakeFocus();
        holdsFocus = false;
        if (!isOurs)
            return;
        if (canTakeFocusBack(before.item)) {
            before.giveTo(before.item);
        } else if (before.isByKeyboard) {
            root.parent.nextItemInFocusChain(true).forceActiveFocus(Qt.TabFocusReason);
        } else {
            root.focus = false;
            root.parent.forceActiveFocus(Qt.PopupFocusReason);
        }
        before.item = null;
    }

    anchors.fill: parent
    z: 10

    Accessible.role: Accessible.Dialog
    Accessible.name: title

    Keys.onEscapePressed: {
        if (cancellable)
            cancelled();
    }
    // Nothing else can be reached while the overlay stands.
    Keys.onTabPressed: {}
    Keys.onBacktabPressed: {}

    onVisibleChanged: visible ? guardFocus() : giveFocusBack()
    onFocusNowChanged: Qt.callLater(guardFocus) // qmllint disable type
    Component.onCompleted: guardFocus()

    Rectangle {
        anchors.fill: parent
        color: Theme.dim
    }

    MouseArea {
        anchors.fill: parent
        hoverEnabled: true
        acceptedButtons: Qt.AllButtons
        onWheel: wheel => wheel.accepted = true
    }

    // The window can be moved while its work runs.
    WindowDragArea {
        width: parent.width
        height: Theme.windowBarHeight
    }

    RaisedSurface {
        elevation: Elevation.Overlay
        anchors.centerIn: parent
        width: Math.max(364, cancelButton.implicitWidth + 64)
        height: 262 + heading.extraHeight + messageText.extraHeight - (root.progress < 0 ? 26 : 0)

        Ripple {
            anchors.horizontalCenter: parent.horizontalCenter
            y: 12
            dropSize: 40
            symbolSize: 20
            symbol: root.symbol
            working: root.visible
        }

        SheetTitleText {
            id: heading

            readonly property real extraHeight: Math.max(0, implicitHeight - 26)

            x: 32
            y: 110
            width: parent.width - 64
            text: root.title
            size: 17
            weight: Font.DemiBold
            horizontalAlignment: Text.AlignHCenter
        }

        ElidingText {
            id: messageText

            readonly property real extraHeight: root.isSentence ? Math.max(0, implicitHeight - 16) : 0

            anchors.horizontalCenter: parent.horizontalCenter
            y: 138 + heading.extraHeight
            width: 300
            text: root.message
            color: Theme.textSecondary
            elide: root.isSentence ? Text.ElideNone : Text.ElideMiddle
            wrapMode: root.isSentence ? Text.Wrap : Text.NoWrap
            horizontalAlignment: Text.AlignHCenter
        }

        ProgressBar {
            anchors.horizontalCenter: parent.horizontalCenter
            y: 172 + heading.extraHeight + messageText.extraHeight
            width: 300
            visible: root.progress >= 0
            forwardOnly: true
            value: root.progress
        }

        ActionButton {
            id: cancelButton

            anchors.horizontalCenter: parent.horizontalCenter
            y: parent.height - 56
            leftPadding: 26
            enabled: root.cancellable
            text: Texts.localized("common.cancel")

            // The only stop while the overlay stands: Tab stays here and shows where it is.
            function stay() {
                focus = false;
                forceActiveFocus(Qt.TabFocusReason);
            }

            Keys.onTabPressed: stay()
            Keys.onBacktabPressed: stay()

            onClicked: root.cancelled()
        }
    }
}
