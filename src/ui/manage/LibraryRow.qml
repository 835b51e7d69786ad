import QtQuick
import Vellum.Controls
import Vellum.Theme

// One file that was saved, or one row of the history.
Item {
    id: row

    readonly property int columns: saved ? 1 : 2
    property int current: -1 // the column on which the keyboard stands
    required property string detail
    property bool first: false // of its group
    required property string group
    required property string key
    required property real progress
    required property bool resumes
    readonly property bool saved: group === "saved"
    readonly property string spoken: title + ": " + (current === 1 ? removeButton.text : playButton.text)
    required property string title

    signal played
    signal removed

    function press(column: int) {
        if (column === 1)
            removed();
        else
            played();
    }

    implicitHeight: Theme.rowHeight + Theme.spaceM
    objectName: saved ? "savedRow" : "historyRow"
    Accessible.name: title
    Accessible.role: Accessible.ListItem

    Rectangle {
        anchors.fill: parent
        anchors.leftMargin: Theme.spaceM
        anchors.rightMargin: Theme.spaceM
        color: Theme.panel
    }
    Separator {
        anchors.left: parent.left
        anchors.leftMargin: Theme.spaceM + Theme.spaceL
        anchors.right: parent.right
        anchors.rightMargin: Theme.spaceM
        visible: !row.first
    }
    Icon {
        id: drawing

        anchors.left: parent.left
        anchors.leftMargin: Theme.spaceM + Theme.spaceL
        anchors.verticalCenter: parent.verticalCenter
        color: Theme.textMuted
        name: "film"
        visible: row.saved
    }
    Column {
        anchors.left: row.saved ? drawing.right : parent.left
        anchors.leftMargin: row.saved ? Theme.spaceM : Theme.spaceM + Theme.spaceL
        anchors.right: bar.left
        anchors.rightMargin: Theme.spaceL
        anchors.verticalCenter: parent.verticalCenter
        spacing: Theme.spaceXS / 2

        Label {
            elide: row.saved ? Text.ElideMiddle : Text.ElideRight
            horizontalAlignment: Text.AlignLeft
            objectName: "title"
            text: row.title
            width: parent.width
        }
        Label {
            color: Theme.textMuted
            font.pixelSize: Theme.fontSmall
            objectName: "detail"
            text: row.detail
            width: parent.width
        }
    }
    ProgressBar {
        id: bar

        anchors.right: buttons.left
        anchors.rightMargin: Theme.spaceL
        anchors.verticalCenter: parent.verticalCenter
        name: row.title
        value: row.progress
        visible: row.progress > 0
        width: visible ? Theme.volumeWidth : 0
    }
    Row {
        id: buttons

        anchors.right: parent.right
        anchors.rightMargin: 2 * Theme.spaceM
        anchors.verticalCenter: parent.verticalCenter
        spacing: Theme.spaceXS

        Button {
            id: playButton

            focusPolicy: Qt.NoFocus
            icon.name: "play"
            objectName: row.saved ? "playButton" : "resumeButton"
            text: row.resumes ? qsTr("Resume") : qsTr("Play")
            Accessible.name: qsTr("%1 %2").arg(text).arg(row.title)
            onClicked: row.played()

            FocusRing {
                radius: Theme.radiusM
                shown: row.current === 0
            }
        }
        IconButton {
            id: removeButton

            color: Theme.textMuted
            focusPolicy: Qt.NoFocus
            icon.name: "close"
            objectName: "removeButton"
            text: qsTr("Remove from history")
            visible: !row.saved
            onClicked: row.removed()

            FocusRing {
                radius: height / 2
                shown: row.current === 1
            }
        }
    }
}
