import QtQuick
import Quillmere

/// A startup item: its name and file, its type and risk, and the switch that says whether it is started.
MenuListRow {
    id: root

    required property var item
    required property string name
    required property string pathText
    required property string typeText
    required property int riskLevel
    required property bool isEnabled
    required property StartupColumns columns

    signal switched

    record: item
    moreX: columns.moreX
    dividerFrom: columns.nameX

    Accessible.name: name + ", " + typeText + ", " + badge.label + ", "
                     + Texts.localized(isEnabled ? "control.on" : "control.off") + ", " + pathText
    Accessible.description: Texts.localized("control.hint.toggle") + ". " + Texts.localized("control.hint.menu")

    onActivated: switched()

    ElidingText {
        x: root.columns.nameX
        y: 10
        width: root.columns.nameWidth
        height: 20
        text: root.name
        size: 14
        weight: Font.Bold

        Accessible.ignored: true
    }

    ElidingText {
        x: root.columns.nameX
        y: 31
        width: root.columns.nameWidth
        height: 16
        text: root.pathText
        size: 12
        color: Theme.textTertiary
        elide: Text.ElideMiddle

        Accessible.ignored: true
    }

    ElidingText {
        x: root.columns.typeX
        width: root.columns.typeWidth
        height: parent.height
        text: root.typeText
        color: Theme.textSecondary

        Accessible.ignored: true
    }

    RiskBadge {
        id: badge

        x: root.columns.riskX
        anchors.verticalCenter: parent.verticalCenter
        width: Math.min(implicitWidth, root.columns.riskWidth)
        riskLevel: root.riskLevel

        Accessible.ignored: true
    }

    Toggle {
        x: root.columns.statusX
        anchors.verticalCenter: parent.verticalCenter
        focusPolicy: Qt.NoFocus
        on: root.isEnabled
        accessibleName: root.name

        Accessible.ignored: root.concealed

        onSwitched: {
            root.list.pick(root.index);
            root.switched();
        }
    }
}
