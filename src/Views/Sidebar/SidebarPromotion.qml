import QtQuick
import Quillmere

/// The promotion's place in the sidebar, with its margins.
Item {
    id: root

    implicitHeight: card.height + 12

    PromotionCard {
        id: card

        x: 10
        y: 6
        width: root.width - 20
    }
}
