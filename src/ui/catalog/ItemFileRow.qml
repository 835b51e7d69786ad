import QtQuick
import Vellum.Controls
import Vellum.Theme

// One file of an item, with what can be done with it.
Item {
    id: row

    required property bool canPlay
    required property string format
    required property int index
    required property string name
    required property string size

    signal playPressed
    signal savePressed
    signal reached // by the keyboard

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
            icon.name: "play"
            objectName: "playButton" + row.index
            prominent: true
            text: qsTr("Play")
            visible: row.canPlay
            onActiveFocusChanged: if (activeFocus)
                row.reached()
            onClicked: row.playPressed()
        }
        Button {
            icon.name: "downloads"
            objectName: "saveButton" + row.index
            text: qsTr("Save to Downloads")
            onActiveFocusChanged: if (activeFocus)
                row.reached()
            onClicked: row.savePressed()
        }
    }
}
