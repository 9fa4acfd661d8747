import QtQuick
import Quillmere

/// A category of a cleanup screen, bound to its row of the model.
CategoryRow {
    required property int index
    required name
    required description
    required iconName
    required riskLevel
    required countText
    required sizeText
    required selected
    required available
    required expanded
    required items
    required moreText

    keepText: Texts.localized("developer.installed.keep")
}
