import QtQuick
import Quillmere

/// The header of a section or of a table's column.
BodyText {
    size: 11
    weight: Font.DemiBold
    color: Theme.textTertiary
}
