pragma Singleton

import QtQuick
import Quillmere

/// The texts of the screens. A binding that asks here follows every change of language.
QtObject {
    function localized(key: string): string {
        // A call alone is not watched by a binding; reading the language is.
        return Localizer.language < 0 ? key : Localizer.localized(key);
    }
}
