import QtQuick

/// Hides a row that waits to be used again, since a screen reader would still tell of it. It hides a little later, when
/// the keyboard has gone on to another row: what is hidden with the keyboard loses it to nobody.
Connections {
    id: root

    required property Item row

    property bool isPooled: false

    function hide() {
        row.visible = !isPooled;
    }

    function onPooled() {
        isPooled = true;
        Qt.callLater(hide); // qmllint disable type
    }

    function onReused() {
        isPooled = false;
        row.visible = true;
    }
}
