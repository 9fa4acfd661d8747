import QtQuick
import QtQuick.Templates as T
import Quillmere

/// A one-line field with its label above.
FocusScope {
    id: root

    property alias text: field.text
    property alias placeholderText: field.placeholderText
    property string label
    property bool monospaced: false

    signal accepted()

    implicitWidth: 328
    implicitHeight: field.y + field.height

    CaptionText {
        id: caption

        width: root.width
        visible: text !== ""
        text: root.label
        weight: Font.DemiBold
        wrapMode: Text.Wrap
    }

    T.TextField {
        id: field

        focus: true
        y: caption.visible ? caption.implicitHeight + 6 : 0
        width: root.width
        height: 38
        leftPadding: 12
        rightPadding: 12
        color: Theme.text
        placeholderTextColor: Theme.textTertiary
        selectionColor: Theme.accentFill
        selectedTextColor: Theme.fillText
        selectByMouse: true
        verticalAlignment: TextInput.AlignVCenter
        font.family: root.monospaced ? Theme.monospaceFamily : Theme.textFamily
        font.pixelSize: 14
        font.weight: Font.Medium

        Accessible.role: Accessible.EditableText
        Accessible.name: root.label === "" ? root.placeholderText : root.label

        onAccepted: root.accepted()

        background: InputSurface {
            focused: field.activeFocus
            border.color: Theme.fieldBorder
        }
    }
}
