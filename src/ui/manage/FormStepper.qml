import QtQuick
import Vellum.Controls

// A row of a form with a number in its text. `limits` has from, to, step, value and label; whoever
// owns it sets the value in `moved`.
FormRow {
    id: row

    required property var limits

    signal moved(int value)

    text: limits.label

    Stepper {
        from: row.limits.from
        name: row.limits.label
        objectName: "stepper"
        stepSize: row.limits.step
        to: row.limits.to
        value: row.limits.value
        valueText: ""
        onValueModified: row.moved(value)
    }
}
