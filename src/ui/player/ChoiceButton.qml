import QtQuick
import QtQuick.Templates as T
import Vellum.Controls
import Vellum.Theme

// One file of a torrent to choose: its name, and its size in a column of its own.
T.AbstractButton {
    id: choice

    property string size

    focusPolicy: Qt.NoFocus
    font.family: Theme.family
    font.pixelSize: Theme.fontBody
    horizontalPadding: Theme.spaceM
    implicitHeight: Theme.controlHeight
    Accessible.description: size
    Accessible.name: text
    Accessible.role: Accessible.Button
    Keys.onEnterPressed: event => Press.on(choice, event)
    Keys.onReturnPressed: event => Press.on(choice, event)

    background: Rectangle {
        color: Theme.raised
        radius: Theme.radiusM

        Rectangle {
            anchors.fill: parent
            color: Theme.text
            opacity: choice.down ? Theme.pressStrength : choice.hovered ? Theme.hoverStrength : 0
            radius: Theme.radiusM
        }
        Rectangle {
            anchors.fill: parent
            border.color: choice.activeFocus ? Theme.accent : Theme.hairline
            border.width: choice.activeFocus ? Theme.focusWidth : Theme.hairlineWidth
            color: Theme.clear
            radius: Theme.radiusM
        }
    }
    contentItem: Item {
        Label {
            anchors.left: parent.left
            anchors.right: bytes.left
            anchors.rightMargin: Theme.spaceM
            anchors.verticalCenter: parent.verticalCenter
            elide: Text.ElideMiddle
            text: choice.text
            Accessible.ignored: true
        }
        Label {
            id: bytes

            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            color: Theme.textMuted
            text: choice.size
            Accessible.ignored: true
        }
    }
}
