import QtQuick
import Quillmere

/// A text of the wizard, which speaks the language that is chosen in it.
QtObject {
    id: root

    required property WelcomeViewModel viewModel

    function of(key: string): string {
        // A call alone is not watched by a binding; reading the language is.
        return viewModel.languageIndex < 0 ? key : viewModel.text(key);
    }
}
