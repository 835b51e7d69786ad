pragma ComponentBehavior: Bound
import QtQuick
import Vellum.Controls
import Vellum.Theme

// One row of the result table.
Item {
    id: row

    required property string failure
    required property string format
    required property bool hasVariants
    required property int index
    required property string key
    required property string note
    required property string peers
    required property bool playable
    required property string playState
    required property string quality
    required property string seeds
    required property bool selected
    required property string size
    required property string source
    required property string title

    required property TableColumns columns
    property bool isCurrent: false
    property bool ringed: false

    signal actionsWanted(Item at, real x, real y)
    signal picked(int modifiers)
    signal played
    signal variantsWanted(Item at)

    function askForActions() {
        row.actionsWanted(more, 0, more.height);
    }

    implicitHeight: Theme.rowHeight
    Accessible.description: note
    Accessible.name: qsTr("%1, %2, %3 seeds").arg(title).arg(size).arg(seeds)
    Accessible.role: Accessible.Row
    Accessible.selected: selected

    Rectangle {
        anchors.fill: parent
        border.color: Theme.accent
        border.width: row.ringed ? Theme.focusWidth : 0
        color: row.selected ? Theme.tint(Theme.accent) : pointer.hovered ? Theme.panel : Theme.clear
        radius: Theme.radiusM
    }
    HoverHandler {
        id: pointer
    }
    MouseArea {
        acceptedButtons: Qt.LeftButton | Qt.RightButton
        anchors.fill: parent
        onClicked: mouse => {
            if (mouse.button === Qt.LeftButton)
                row.picked(mouse.modifiers);
            else
                row.actionsWanted(row, mouse.x, mouse.y);
        }
    }
    PlayCell {
        anchors.verticalCenter: parent.verticalCenter
        failure: row.failure
        hasVariants: row.hasVariants
        playState: row.playState
        playable: row.playable
        reachable: row.isCurrent
        width: row.columns.play
        x: Theme.spaceXS
        onPlayed: row.played()
        onVariantsWanted: at => row.variantsWanted(at)
    }
    Column {
        id: names

        anchors.verticalCenter: parent.verticalCenter
        width: row.columns.title
        x: row.columns.play

        Label {
            leftPadding: Theme.spaceS
            rightPadding: Theme.spaceS
            text: row.title
            width: parent.width
            Accessible.ignored: true
        }
        Label {
            color: Theme.textFaint
            font.pixelSize: Theme.fontSmall
            leftPadding: Theme.spaceS
            rightPadding: Theme.spaceS
            text: row.note
            visible: text !== ""
            width: parent.width
            Accessible.ignored: true
        }
    }
    Row {
        anchors.right: parent.right
        height: parent.height

        CellText {
            isNumber: true
            text: row.size
            width: row.columns.size
        }
        CellText {
            color: Theme.text
            isNumber: true
            text: row.seeds
            width: row.columns.number
        }
        CellText {
            isNumber: true
            text: row.peers
            width: row.columns.number
        }
        CellText {
            text: row.quality
            width: row.columns.label
        }
        CellText {
            text: row.format
            width: row.columns.format
        }
        Label {
            color: Theme.textMuted
            height: parent.height
            leftPadding: Theme.spaceS
            text: row.source
            width: row.columns.source
            Accessible.ignored: true
        }
        IconButton {
            id: more

            anchors.verticalCenter: parent.verticalCenter
            color: Theme.textMuted
            focusPolicy: row.isCurrent ? Qt.TabFocus : Qt.NoFocus
            icon.name: "more"
            objectName: "actionsButton"
            text: qsTr("Actions")
            width: row.columns.actions
            onClicked: row.askForActions()
        }
    }
}
