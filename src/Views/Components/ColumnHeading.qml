import QtQuick
import Quillmere

/// The head of a column that only names it, on two lines where the column is narrow.
BodyText {
    height: 30
    size: 12
    weight: Font.DemiBold
    color: Theme.textTertiary
    wrapMode: Text.Wrap
    elide: Text.ElideRight
}
