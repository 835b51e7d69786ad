import QtQuick
import QtQuick.Templates as T
import Vellum.Theme

// A value on a line. `bufferedFrom` to `bufferedTo`, in the values of the slider, shows behind it;
// `name` tells a screen reader of what. Arrows step by `stepSize`, or a twentieth of the range.
T.Slider {
    id: slider

    property real bufferedFrom: from
    property real bufferedTo: from
    property string name

    function place(at: real): real {
        return to > from ? Math.max(0, Math.min(1, (at - from) / (to - from))) : 0;
    }

    focusPolicy: Qt.StrongFocus
    implicitHeight: Theme.controlHeight
    implicitWidth: Theme.sliderWidth
    opacity: enabled ? 1 : Theme.disabledStrength
    wheelEnabled: false
    Accessible.name: name
    Accessible.role: Accessible.Slider

    background: Rectangle {
        color: Theme.track
        height: Theme.barHeight
        radius: height / 2
        width: slider.availableWidth
        x: slider.leftPadding
        y: (slider.height - height) / 2

        Rectangle {
            color: Theme.buffered
            height: parent.height
            radius: parent.radius
            width: Math.max(0, slider.place(slider.bufferedTo) * parent.width - x)
            x: slider.place(slider.bufferedFrom) * parent.width
        }
        Rectangle {
            color: Theme.accent
            height: parent.height
            radius: parent.radius
            width: slider.position * parent.width
        }
    }
    handle: Rectangle {
        color: Theme.text
        height: Theme.handleSize
        radius: height / 2
        scale: slider.pressed ? 1 + Theme.pressStrength : 1
        width: height
        x: slider.leftPadding + slider.visualPosition * (slider.availableWidth - width)
        y: (slider.height - height) / 2

        FocusRing {
            shown: slider.visualFocus
        }
    }
}
