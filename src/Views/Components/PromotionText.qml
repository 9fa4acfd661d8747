import QtQuick
import Quillmere

/// The text on the drawn promotion.
Item {
    id: root

    property string name
    property string slogan
    property string message

    BodyText {
        x: 12
        y: 10
        width: root.width - 83
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
        x: 12
        y: 87
        width: root.width - 22
        text: root.message
        size: 11
        color: Theme.fillText
        lineHeight: 14
        lineHeightMode: Text.FixedHeight
        wrapMode: Text.Wrap
        maximumLineCount: 2
        elide: Text.ElideRight

        Accessible.ignored: true
    }
}
