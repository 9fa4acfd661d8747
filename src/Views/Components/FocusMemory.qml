import QtQuick
import QtQuick.Templates as T
import Quillmere

/// Where the keyboard was before something covered it, and how it had come there, so that it can be given back as it was.
/// In a KeyedList it is the list that knows, and that gets it back whatever has become of its row.
QtObject {
    id: root

    property Item item: null
    /// It had come by keys, which showed.
    property bool isByKeyboard: false

    /// With which a control is given the keyboard that is to show it, or not, as the one before did.
    readonly property int reason: isByKeyboard ? Qt.TabFocusReason : Qt.PopupFocusReason

    function listAround(at: Item): KeyedList {
        for (let above = at; above !== null; above = above.parent) {
            const list = above as KeyedList;
            if (list !== null)
                return list;
        }
        return null;
    }

    /// Takes in how the keyboard came to @p at, but not that it was there.
    function rememberHow(at: Item) {
        const list = listAround(at);
        const control = at as T.Control;
        isByKeyboard = list !== null ? list.isByKeyboard : control !== null && control.visualFocus;
    }

    function remember(at: Item) {
        rememberHow(at);
        item = listAround(at) ?? at;
    }

    function giveTo(at: Item) {
        const list = at as KeyedList;
        if (list !== null)
            list.takeFocus(isByKeyboard);
        else
            at.forceActiveFocus(reason);
    }
}
