import QtQuick
import Vellum.Theme

// Stands where something will be, in its size, and breathes until it is there.
Rectangle {
    id: skeleton

    color: Theme.raised
    radius: Theme.radiusS
    Accessible.ignored: true

    SequentialAnimation on opacity {
        loops: Animation.Infinite
        running: skeleton.visible

        NumberAnimation {
            duration: Theme.turn
            easing.type: Easing.InOutSine
            from: 1
            to: Theme.disabledStrength
        }
        NumberAnimation {
            duration: Theme.turn
            easing.type: Easing.InOutSine
            from: Theme.disabledStrength
            to: 1
        }
    }
}
