import QtQuick
import Quillmere

/// Small secondary text.
BodyText {
    size: 12
    color: Theme.textSecondary
}
