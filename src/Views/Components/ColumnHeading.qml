import QtQuick
import Quillmere

/// The head of a column that only names it.
BodyText {
    height: 30
    size: 12
    weight: Font.DemiBold
    color: Theme.textTertiary
    elide: Text.ElideRight
}
