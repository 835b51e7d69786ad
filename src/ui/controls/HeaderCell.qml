import QtQuick
import QtQuick.Templates as T
import Vellum.Theme

// The head of a table's column. A `sortable` one is pressed to sort by it, and again to turn round;
// `sorted` and `descending` are the owner's. Numbers stand at the right: `rightAligned`.
T.AbstractButton {
    id: cell

    property bool descending: false
    property bool rightAligned: false
    property bool sortable: true
    property bool sorted: false

    enabled: sortable
    focusPolicy: Qt.StrongFocus
    font.family: Theme.family
    font.pixelSize: Theme.fontSmall
    font.weight: Font.Medium
    horizontalPadding: Theme.spaceS
    implicitHeight: Theme.chipHeight
    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    Accessible.description: !sorted ? "" : descending ? qsTr("Sorted descending") : qsTr("Sorted ascending")
    Accessible.name: text
    Accessible.role: Accessible.ColumnHeader
    Keys.onEnterPressed: event => Press.on(cell, event)
    Keys.onReturnPressed: event => Press.on(cell, event)

    background: ControlSurface {
        control: cell
        radius: Theme.radiusS
        visible: cell.sortable
    }
    contentItem: Item {
        implicitHeight: words.implicitHeight
        implicitWidth: words.implicitWidth + arrow.width + Theme.spaceXS

        Label {
            id: words

            readonly property int room: cell.sorted ? arrow.width + Theme.spaceXS : 0

            anchors.verticalCenter: parent.verticalCenter
            color: cell.sorted ? Theme.text : Theme.textMuted
            font: cell.font
            // A head that cannot be pressed is not a disabled one to look at.
            opacity: 1
            text: cell.text
            width: Math.min(Math.ceil(implicitWidth), parent.width - room)
            x: cell.rightAligned ? parent.width - width - room : 0
            Accessible.ignored: true
        }
        Icon {
            id: arrow

            anchors.verticalCenter: parent.verticalCenter
            color: Theme.accent
            name: cell.descending ? "chevron-down" : "chevron-up"
            size: Theme.fontSmall
            visible: cell.sorted
            x: words.x + words.width + Theme.spaceXS
        }
    }
}
