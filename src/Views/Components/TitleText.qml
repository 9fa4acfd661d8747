import QtQuick

/// The title of a screen.
BodyText {
    size: 26
    weight: Font.Bold
    font.letterSpacing: -0.2
    elide: Text.ElideRight

    Accessible.role: Accessible.Heading
}
