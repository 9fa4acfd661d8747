import QtQuick
import Quillmere

/// What a command said, on a dark ground. The text can be selected and copied; while idle it shows a sentence.
CardView {
    id: root

    property string output
    property bool running: false
    property string idleText
    property string copyText: Texts.localized("control.copy")

    readonly property bool idle: output === "" && !running

    icon: "terminal"

    trailing: Row {
        spacing: 8

        Spinner {
            anchors.verticalCenter: parent.verticalCenter
            running: root.running
        }

        IconButton {
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
    }

    Rectangle {
        x: -Theme.cardPadding + 12
        width: root.width - 24
        height: root.height - 50 - 12
        radius: Theme.rowRadius
        color: Theme.consoleGround

        ScrollArea {
            id: scroll

            anchors.fill: parent
            anchors.margins: 2
            contentHeight: log.implicitHeight
            activeFocusOnTab: true
            visible: !root.idle

            onContentHeightChanged: scrollTo(contentHeight)

            TextEdit {
                id: log

                width: scroll.width
                leftPadding: 14
                rightPadding: 14
                topPadding: 14
                bottomPadding: 14
                readOnly: true
                selectByMouse: true
                selectByKeyboard: true
                activeFocusOnPress: true
                text: root.output
                textFormat: TextEdit.PlainText
                wrapMode: TextEdit.Wrap
                color: Theme.consoleText
                selectionColor: Theme.accentFill
                selectedTextColor: Theme.fillText
                font.family: Theme.monospaceFamily
                font.pixelSize: 12

                Accessible.role: Accessible.Terminal
                Accessible.name: root.title
                Accessible.readOnly: true
                Accessible.multiLine: true
            }
        }

        FocusRing {
            shown: scroll.activeFocus && !log.activeFocus
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
