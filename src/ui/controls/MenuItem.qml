import QtQuick
import QtQuick.Templates as T
import Vellum.Theme

// One choice of a menu; a `checkable` one shows a mark before its text while it is in force. `keys`
// are those that do the same.
T.MenuItem {
    id: entry

    property bool destructive: false
    property string keys
    readonly property string drawing: checkable ? (checked ? "check" : "") : icon.name
    readonly property bool indented: checkable || icon.name !== ""
    readonly property color ink: highlighted ? Theme.accentInk : destructive ? Theme.bad : Theme.text

    font.family: Theme.family
    font.pixelSize: Theme.fontBody
    horizontalPadding: Theme.spaceS
    implicitHeight: visible ? Theme.chipHeight : 0
    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    Accessible.checkable: checkable
    Accessible.checked: checked
    Accessible.name: text
    Accessible.role: Accessible.MenuItem

    background: Rectangle {
        color: entry.highlighted && entry.enabled ? Theme.accent : Theme.clear
        radius: Theme.radiusS
    }
    contentItem: Item {
        implicitWidth: words.implicitWidth + words.x + (arrow.visible ? arrow.width : 0) + shortcut.room

        Icon {
            anchors.verticalCenter: parent.verticalCenter
            color: entry.ink
            name: entry.drawing
            size: Theme.iconS
        }
        Label {
            id: words

            color: entry.ink
            font: entry.font
            height: parent.height
            horizontalAlignment: Text.AlignLeft
            text: entry.text
            width: parent.width - x - (arrow.visible ? arrow.width : 0) - shortcut.room
            x: entry.indented ? Theme.iconS + Theme.spaceS : 0
            Accessible.ignored: true
        }
        Label {
            id: shortcut

            readonly property int room: text !== "" ? implicitWidth + Theme.spaceXL : 0

            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            color: entry.highlighted ? entry.ink : Theme.textMuted
            font: entry.font
            text: entry.keys
            Accessible.ignored: true
        }
        Icon {
            id: arrow

            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            color: entry.ink
            name: "chevron-right"
            size: Theme.iconS
            visible: entry.subMenu !== null
        }
    }
}
