import QtQuick

/// The title of a sheet, an alert or an overlay.
BodyText {
    size: 18
    weight: Font.Bold
    wrapMode: Text.Wrap

    Accessible.role: Accessible.Heading
}
