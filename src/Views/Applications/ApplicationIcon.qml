import QtQuick
import Quillmere.Support

/// The icon of an application, or a tile with its first letter.
Image {
    id: root

    property string icon
    property string name
    property int side: 34

    width: side
    height: side
    sourceSize.width: side
    sourceSize.height: side
    source: ApplicationIcons.source(icon, name)

    Accessible.ignored: true
}
