import QtQuick

/// The name of a row or the title of a card.
BodyText {
    size: 14
    weight: Font.DemiBold
}
