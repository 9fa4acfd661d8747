import QtQuick
import Quillmere

/// One of the program's drawings, in one colour. An unknown or empty name shows nothing.
Image {
    id: root

    property string name
    property color color: Theme.textSecondary
    property int size: 20

    width: size
    height: size
    source: name === "" ? "" : "image://symbol/" + name + "?color=" + color.toString().slice(1)
    sourceSize.width: size
    sourceSize.height: size

    Accessible.ignored: true
}
