import QtQuick
import QtQuick.Templates as T
import Vellum.Theme

// A drawing to press. Its `text` is what a tooltip and a screen reader say.
T.Button {
    id: button

    property color color: checked ? Theme.accent : Theme.text
    property int size: Theme.iconM
    property bool wasPressed: false // since the pointer came

    implicitHeight: Math.max(Theme.controlHeight, size + Theme.spaceM)
    implicitWidth: implicitHeight
    Accessible.name: text
    Accessible.role: Accessible.Button
    Keys.onEnterPressed: event => Press.on(button, event)
    Keys.onReturnPressed: event => Press.on(button, event)
    onHoveredChanged: wasPressed = false
    onPressed: wasPressed = true

    background: ControlSurface {
        control: button
        radius: button.height / 2
    }
    contentItem: Item {
        Icon {
            anchors.centerIn: parent
            color: button.color
            name: button.icon.name
            size: button.size
        }
    }

    Tip {
        shown: button.hovered && !button.wasPressed
        text: button.text
    }
}
