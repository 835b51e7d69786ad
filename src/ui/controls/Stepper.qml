import QtQuick
import QtQuick.Templates as T
import Vellum.Theme

// A whole number between two buttons; `name` tells a screen reader of what. The arrow keys step too.
// Without a `valueText` it is the two buttons alone, for a row whose own text has the number.
T.SpinBox {
    id: stepper

    property string name
    property string valueText: Number(value).toLocaleString(Qt.locale(), "f", 0)

    editable: false
    focusPolicy: Qt.StrongFocus
    font.family: Theme.family
    font.pixelSize: Theme.fontBody
    implicitHeight: Theme.controlHeight
    implicitWidth: valueText !== "" ? Theme.stepperWidth : 2 * implicitHeight + Theme.hairlineWidth
    leftPadding: height
    rightPadding: height
    wheelEnabled: false
    Accessible.name: name
    Accessible.role: Accessible.SpinBox
    Keys.onLeftPressed: step(false)
    Keys.onRightPressed: step(true)

    // As the buttons do: what listens to `valueModified` hears of it, and `value` stays bound.
    function step(up: bool) {
        const before = value;
        if (up)
            increase();
        else
            decrease();
        if (value !== before)
            valueModified();
    }

    background: Rectangle {
        border.color: Theme.hairline
        border.width: Theme.hairlineWidth
        color: Theme.raised
        opacity: stepper.enabled ? 1 : Theme.disabledStrength
        radius: Theme.radiusM

        Separator {
            anchors.horizontalCenter: parent.horizontalCenter
            height: parent.height
            visible: stepper.valueText === ""
        }
        FocusRing {
            shown: stepper.visualFocus
        }
    }
    contentItem: Label {
        font: stepper.font
        horizontalAlignment: Text.AlignHCenter
        text: stepper.valueText
        Accessible.ignored: true
    }
    down.indicator: StepMark {
        enabled: stepper.enabled && stepper.value > stepper.from
        hovered: stepper.down.hovered
        icon: "minus"
        pressed: stepper.down.pressed
    }
    up.indicator: StepMark {
        enabled: stepper.enabled && stepper.value < stepper.to
        hovered: stepper.up.hovered
        icon: "plus"
        pressed: stepper.up.pressed
        x: stepper.width - width
    }
}
