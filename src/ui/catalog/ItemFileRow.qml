import QtQuick
import Vellum.Controls
import Vellum.Theme

// One file of an item, with what can be done with it.
Item {
    id: row

    required property bool canPlay
    readonly property int columns: canPlay ? 2 : 1
    property int current: -1 // the column on which the keyboard stands
    required property string format
    required property int index
    required property string name
    required property string size

    readonly property string spoken: name + ": " + (saves(current) ? saveButton.text : playButton.text)

    signal playPressed
    signal savePressed

    function saves(column: int): bool {
        return column === columns - 1;
    }
    function press(column: int) {
        if (saves(column))
            savePressed();
        else
            playPressed();
    }

    implicitHeight: Theme.rowHeight + Theme.spaceM
    Accessible.name: name
    Accessible.role: Accessible.ListItem

    Column {
        anchors.left: parent.left
        anchors.right: buttons.left
        anchors.rightMargin: Theme.spaceL
        anchors.verticalCenter: parent.verticalCenter
        spacing: Theme.spaceXS

        Label {
            elide: Text.ElideMiddle
            objectName: "fileName" + row.index
            text: row.name
            width: parent.width
        }
        Label {
            color: Theme.textMuted
            font.pixelSize: Theme.fontSmall
            text: row.format + (row.format !== "" && row.size !== "" ? " · " : "") + row.size
            width: parent.width
        }
    }
    Row {
        id: buttons

        anchors.right: parent.right
        // The ring of the last one has room.
        anchors.rightMargin: Theme.spaceXS
        anchors.verticalCenter: parent.verticalCenter
        spacing: Theme.spaceS

        Button {
            id: playButton

            focusPolicy: Qt.NoFocus
            icon.name: "play"
            objectName: "playButton" + row.index
            prominent: true
            text: qsTr("Play")
            visible: row.canPlay
            onClicked: row.playPressed()

            FocusRing {
                radius: Theme.radiusM
                shown: row.current >= 0 && !row.saves(row.current)
            }
        }
        Button {
            id: saveButton

            focusPolicy: Qt.NoFocus
            icon.name: "downloads"
            objectName: "saveButton" + row.index
            text: qsTr("Save to Downloads")
            onClicked: row.savePressed()

            FocusRing {
                radius: Theme.radiusM
                shown: row.saves(row.current)
            }
        }
    }
}
