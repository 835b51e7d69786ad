import QtQuick
import Vellum.Theme

// One of the two ends of a stepper.
Item {
    id: mark

    property bool hovered: false
    property alias icon: drawing.name
    property bool pressed: false

    height: parent?.height ?? 0
    width: height

    Rectangle {
        anchors.fill: parent
        anchors.margins: Theme.hairlineWidth
        color: Theme.text
        opacity: !mark.enabled ? 0 : mark.pressed ? Theme.pressStrength : mark.hovered ? Theme.hoverStrength : 0
        radius: Theme.radiusM
    }
    Icon {
        id: drawing

        anchors.centerIn: parent
        size: Theme.iconS
    }
}
