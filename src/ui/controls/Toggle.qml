import QtQuick
import QtQuick.Templates as T
import Vellum.Theme

// On or off: a switch at the right of its text, which wraps when the row is narrow.
T.Switch {
    id: toggle

    font.family: Theme.family
    font.pixelSize: Theme.fontBody
    implicitHeight: Math.max(Theme.controlHeight, implicitContentHeight)
    implicitWidth: leftPadding + (text !== "" ? implicitContentWidth + spacing : 0) + indicator.width + rightPadding
    spacing: Theme.spaceM
    Accessible.checkable: true
    Accessible.checked: checked
    Accessible.name: text
    Accessible.role: Accessible.CheckBox
    Keys.onEnterPressed: event => Press.on(toggle, event)
    Keys.onReturnPressed: event => Press.on(toggle, event)

    contentItem: Label {
        font: toggle.font
        rightPadding: toggle.text !== "" ? toggle.indicator.width + toggle.spacing : 0
        text: toggle.text
        wrapMode: Text.Wrap
        Accessible.ignored: true
    }
    indicator: Rectangle {
        color: toggle.checked ? Theme.accent : Theme.track
        height: Theme.toggleHeight
        opacity: toggle.enabled ? 1 : Theme.disabledStrength
        radius: height / 2
        width: Theme.toggleWidth
        x: toggle.width - toggle.rightPadding - width
        y: (toggle.height - height) / 2

        Behavior on color {
            ColorAnimation {
                duration: Theme.motion
                easing.type: Theme.easing
            }
        }

        FocusRing {
            shown: toggle.visualFocus
        }
        Rectangle {
            readonly property int gap: (parent.height - height) / 2

            color: toggle.checked ? Theme.accentInk : Theme.text
            height: parent.height - Theme.spaceXS - (toggle.down ? Theme.hairlineWidth : 0)
            radius: height / 2
            width: height
            x: toggle.checked ? parent.width - width - gap : gap
            y: gap

            Behavior on x {
                NumberAnimation {
                    duration: Theme.motion
                    easing.type: Theme.easing
                }
            }
        }
    }
}
