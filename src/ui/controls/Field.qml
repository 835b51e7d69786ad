import QtQuick
import QtQuick.Templates as T
import Vellum.Theme

// One line of text to type, with a button that empties it; `icon` is a drawing before the text.
T.TextField {
    id: field

    property string icon

    color: enabled ? Theme.text : Theme.textFaint
    font.family: Theme.family
    font.pixelSize: Theme.fontBody
    implicitHeight: Theme.controlHeight
    implicitWidth: Theme.fieldWidth
    leftPadding: Theme.spaceM + (icon !== "" ? Theme.iconM + Theme.spaceS - Theme.spaceXS : 0)
    placeholderTextColor: Theme.textFaint
    rightPadding: clearButton.visible ? clearButton.width : Theme.spaceM
    selectByMouse: true
    selectedTextColor: Theme.accentInk
    selectionColor: Theme.accent
    verticalAlignment: Text.AlignVCenter
    Accessible.name: placeholderText
    Accessible.role: Accessible.EditableText

    // qmllint disable unqualified
    cursorDelegate: TextCursor {
        position: field.cursorPosition
        shown: field.cursorVisible
    }
    // qmllint enable unqualified
    background: Rectangle {
        border.color: field.activeFocus ? Theme.accent : Theme.hairline
        border.width: field.activeFocus ? Theme.focusWidth : Theme.hairlineWidth
        opacity: field.enabled ? 1 : Theme.disabledStrength
        color: field.hovered && !field.activeFocus ? Theme.raised : Theme.panel
        radius: Theme.radiusM
    }

    Icon {
        anchors.left: parent.left
        anchors.leftMargin: Theme.spaceS
        anchors.verticalCenter: parent.verticalCenter
        color: Theme.textMuted
        name: field.icon
        visible: name !== ""
    }
    Label {
        color: field.placeholderTextColor
        font: field.font
        height: field.height
        text: field.placeholderText
        visible: field.length === 0 && field.preeditText === ""
        width: field.width - field.leftPadding - field.rightPadding
        x: field.leftPadding
        Accessible.ignored: true
    }
    IconButton {
        id: clearButton

        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        color: Theme.textMuted
        // Whoever has the keyboard selects all and types, and needs no stop here.
        focusPolicy: Qt.NoFocus
        height: field.height
        icon.name: "clear"
        size: Theme.iconS
        text: qsTr("Clear")
        visible: field.length > 0 && field.enabled && !field.readOnly
        onClicked: {
            field.clear();
            field.forceActiveFocus();
        }
    }
}
