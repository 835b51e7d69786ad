import QtQuick
import Vellum.Theme

// How everything that floats comes, and how it goes.
Transition {
    id: fade

    property bool out: false

    NumberAnimation {
        duration: Theme.motionFast
        easing.type: Theme.easing
        from: fade.out ? 1 : 0
        property: "opacity"
        to: fade.out ? 0 : 1
    }
}
