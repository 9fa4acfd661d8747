import QtQuick
import Quillmere

/// A tile of the quick actions that leads to another screen.
QtObject {
    property int tab: SidebarTab.Dashboard
    property string titleKey
    property string symbol
    property color color
}
