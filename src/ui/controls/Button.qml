import QtQuick
import QtQuick.Templates as T
import Vellum.Theme

// A push button: plain, `prominent` (the one thing to do here) or `destructive`; `icon.name` puts a
// drawing before its text.
T.Button {
    id: button

    property bool destructive: false
    property bool prominent: false
    readonly property color ink: prominent ? (destructive ? Theme.badInk : Theme.accentInk)
                                           : destructive ? Theme.bad : Theme.text

    font.family: Theme.family
    font.pixelSize: Theme.fontBody
    font.weight: Font.Medium
    horizontalPadding: Theme.spaceM
    implicitHeight: Theme.controlHeight
    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    spacing: Theme.spaceS
    Accessible.name: text
    Accessible.role: Accessible.Button
    Keys.onEnterPressed: event => Press.on(button, event)
    Keys.onReturnPressed: event => Press.on(button, event)

    background: ControlSurface {
        border.color: Theme.hairline
        border.width: button.prominent ? 0 : Theme.hairlineWidth
        color: button.prominent ? (button.destructive ? Theme.bad : Theme.accent) : Theme.raised
        control: button
        // What is bright already turns darker.
        wash: button.prominent ? Theme.background : Theme.text
    }
    contentItem: IconText {
        color: button.ink
        font: button.font
        icon: button.icon.name
        spacing: button.spacing
        text: button.text
    }
}
