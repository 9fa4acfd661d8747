import QtQuick
import Quillmere

/// One destination of the main window, as large as the room beside the sidebar.
FocusScope {
    required property AppState appState
    required property ViewModelFactory viewModels

    /// Something lies over the screen that has to be answered first.
    property bool isModal: false

    /// The user wants the screen to look at the machine anew.
    signal refreshRequested
}
