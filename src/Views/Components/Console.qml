import QtQuick
import Quillmere

/// What a command said, on a dark ground. The text can be selected and copied; while idle it shows a sentence.
CardView {
    id: root

    property string output
    property string idleText
    property string copyText: Texts.localized("control.copy")

    readonly property bool idle: output === "" && !working

    icon: "terminal"

    trailing: IconButton {
        visible: root.output !== ""
        symbol: "copy"
        symbolSize: 16
        accessibleName: root.copyText

        onClicked: {
            const start = log.selectionStart;
            const end = log.selectionEnd;
            if (start === end)
                log.selectAll();
            log.copy();
            log.select(start, end);
        }
    }

    Rectangle {
        x: -Theme.cardPadding + 12
        width: root.width - 24
        height: parent.height + Theme.cardPadding - 12
        radius: Theme.rowRadius
        color: Theme.consoleGround

        ScrollArea {
            id: scroll

            anchors.fill: parent
            anchors.margins: 2
            contentHeight: log.implicitHeight
            visible: !root.idle

            /// Scrolls no further than it takes to see the place from `top` to `bottom`.
            function reveal(top: real, bottom: real) {
                if (top < contentY)
                    scrollTo(top);
                else if (bottom > contentY + height)
                    scrollTo(bottom - height);
            }

            onContentHeightChanged: scrollTo(contentHeight)

            TextEdit {
                id: log

                /// The keyboard came here by keys.
                property bool isRinged: false

                width: scroll.width
                leftPadding: 14
                rightPadding: 14
                topPadding: 14
                bottomPadding: 14
                readOnly: true
                selectByMouse: true
                selectByKeyboard: true
                activeFocusOnPress: true
                activeFocusOnTab: true
                text: root.output
                textFormat: TextEdit.PlainText
                wrapMode: TextEdit.Wrap
                color: Theme.consoleText
                selectionColor: Theme.accentFill
                selectedTextColor: Theme.fillText
                font.family: Theme.monospaceFamily
                font.pixelSize: 12

                // Not Terminal: only of editable text, which this is but for being locked, can assistive tools read on.
                Accessible.role: Accessible.EditableText
                Accessible.name: root.title
                Accessible.readOnly: true
                Accessible.multiLine: true

                Keys.onPressed: event => {
                    // Not text, but the way on.
                    if (event.key === Qt.Key_Tab || event.key === Qt.Key_Backtab) {
                        nextItemInFocusChain(event.key === Qt.Key_Tab).forceActiveFocus(Qt.TabFocusReason);
                        event.accepted = true;
                    }
                }
                onActiveFocusChanged: isRinged = activeFocus && !isPressed.active
                onCursorRectangleChanged: {
                    if (activeFocus)
                        scroll.reveal(cursorRectangle.y - topPadding, cursorRectangle.y + cursorRectangle.height + bottomPadding);
                }

                PointHandler {
                    id: isPressed
                }
            }
        }

        FocusRing {
            shown: log.isRinged && !root.idle
            controlRadius: Theme.rowRadius
        }

        Column {
            anchors.centerIn: parent
            width: parent.width - 48
            spacing: 12
            visible: root.idle

            Symbol {
                anchors.horizontalCenter: parent.horizontalCenter
                name: "terminal"
                size: 34
                color: Theme.tint(Theme.consoleMuted, 0.8)
            }

            BodyText {
                width: parent.width
                text: root.idleText
                color: Theme.consoleMuted
                wrapMode: Text.Wrap
                horizontalAlignment: Text.AlignHCenter
            }
        }
    }
}
