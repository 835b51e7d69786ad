import QtQuick
import QtQuick.Templates as T
import Vellum.Theme

// One section of the sidebar; `highlighted` is the one that is shown.
T.ItemDelegate {
    id: entry

    focusPolicy: Qt.StrongFocus
    font.family: Theme.family
    font.pixelSize: Theme.fontBody
    font.weight: highlighted ? Font.Medium : Font.Normal
    horizontalPadding: Theme.spaceM
    implicitHeight: Theme.controlHeight + Theme.spaceXS
    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    Accessible.name: text
    Accessible.role: Accessible.PageTab
    Accessible.selected: highlighted
    Keys.onEnterPressed: event => Press.on(entry, event)
    Keys.onReturnPressed: event => Press.on(entry, event)

    background: ControlSurface {
        color: entry.highlighted ? Theme.tint(Theme.accent) : Theme.clear
        control: entry
    }
    contentItem: IconText {
        centred: false
        color: entry.highlighted ? Theme.accent : Theme.text
        font: entry.font
        icon: entry.icon.name
        spacing: Theme.spaceM
        text: entry.text
    }
}
