import QtQuick
import QtQuick.Templates as T
import Vellum.Theme

// A short word to press, round at its ends. One that is `checkable` stays marked.
T.Button {
    id: chip

    font.family: Theme.family
    font.pixelSize: Theme.fontBody
    horizontalPadding: Theme.spaceM
    implicitHeight: Theme.chipHeight
    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    Accessible.checkable: checkable
    Accessible.checked: checked
    Accessible.name: text
    Accessible.role: Accessible.Button
    Keys.onEnterPressed: event => Press.on(chip, event)
    Keys.onReturnPressed: event => Press.on(chip, event)

    background: ControlSurface {
        border.color: chip.checked ? Theme.accent : Theme.hairline
        border.width: Theme.hairlineWidth
        color: chip.checked ? Theme.tint(Theme.accent) : Theme.panel
        control: chip
        radius: height / 2
    }
    contentItem: IconText {
        color: chip.checked ? Theme.accent : Theme.text
        font: chip.font
        icon: chip.icon.name
        size: Theme.iconS
        text: chip.text
    }
}
