import QtQuick
import Quillmere

/// The text on the drawn promotion: its name, its slogan and the beginning of the message, or as much of that as there
/// is room for.
Item {
    id: root

    property string name
    property string slogan
    property string message
    /// Somebody wants to read on.
    property bool isAsked: false

    readonly property bool unfolded: isAsked && beginning.truncated
    readonly property int lineHeight: 14

    BodyText {
        x: 12
        y: 10
        width: root.width - 83
        visible: !root.unfolded
        text: root.name
        size: 11
        weight: Font.DemiBold
        color: Theme.promotionNote
        elide: Text.ElideRight

        Accessible.ignored: true
    }

    BodyText {
        x: 12
        y: 25
        width: root.width - 82
        height: 56
        visible: !root.unfolded
        text: root.slogan
        size: 17
        weight: Font.ExtraBold
        color: Theme.fillText
        font.letterSpacing: 0.2
        fontSizeMode: Text.Fit
        minimumPixelSize: 11
        lineHeight: 18
        lineHeightMode: Text.FixedHeight
        verticalAlignment: Text.AlignTop

        Accessible.ignored: true
    }

    BodyText {
        id: beginning

        x: 12
        y: 87
        width: root.width - 22
        opacity: root.unfolded ? 0 : 1
        text: root.message
        size: 11
        color: Theme.fillText
        lineHeight: root.lineHeight
        lineHeightMode: Text.FixedHeight
        wrapMode: Text.Wrap
        maximumLineCount: 2
        elide: Text.ElideRight

        Accessible.ignored: true
    }

    BodyText {
        x: 12
        y: 10
        width: root.width - 22
        height: root.height - 2 * y
        visible: root.unfolded
        text: root.message
        size: 11
        color: Theme.fillText
        lineHeight: root.lineHeight
        lineHeightMode: Text.FixedHeight
        wrapMode: Text.Wrap
        maximumLineCount: Math.floor(height / root.lineHeight)
        elide: Text.ElideRight

        Accessible.ignored: true
    }
}
