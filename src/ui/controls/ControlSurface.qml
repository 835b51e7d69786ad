import QtQuick
import QtQuick.Templates as T
import Vellum.Theme

// The ground of everything that can be pressed: washed over under the pointer, more so while
// pressed, with a ring when the keyboard has brought the focus.
Rectangle {
    id: surface

    required property T.AbstractButton control
    property color wash: Theme.text

    color: Theme.clear
    opacity: control.enabled ? 1 : Theme.disabledStrength
    radius: Theme.radiusM

    Rectangle {
        anchors.fill: parent
        color: surface.wash
        opacity: surface.control.down ? Theme.pressStrength : surface.control.hovered ? Theme.hoverStrength : 0
        radius: surface.radius

        Behavior on opacity {
            NumberAnimation {
                duration: Theme.motionFast
                easing.type: Theme.easing
            }
        }
    }
    FocusRing {
        shown: surface.control.visualFocus
    }
}
