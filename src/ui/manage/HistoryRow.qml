import QtQuick
import Vellum.Controls
import Vellum.Theme

// One row of the history.
Item {
    id: row

    property bool first: false
    required property string key
    required property real progress
    required property bool resumes
    required property string times
    required property string title

    signal removed
    signal resumed

    implicitHeight: Theme.rowHeight + Theme.spaceM
    objectName: "historyRow"
    Accessible.name: title
    Accessible.role: Accessible.Grouping

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
    Column {
        anchors.left: parent.left
        anchors.leftMargin: Theme.spaceM + Theme.spaceL
        anchors.right: bar.left
        anchors.rightMargin: Theme.spaceL
        anchors.verticalCenter: parent.verticalCenter
        spacing: Theme.spaceXS / 2

        Label {
            horizontalAlignment: Text.AlignLeft
            objectName: "title"
            text: row.title
            width: parent.width
        }
        Label {
            color: Theme.textMuted
            font.pixelSize: Theme.fontSmall
            objectName: "times"
            text: row.times
            width: parent.width
        }
    }
    ProgressBar {
        id: bar

        anchors.right: resumeButton.left
        anchors.rightMargin: Theme.spaceL
        anchors.verticalCenter: parent.verticalCenter
        name: row.title
        value: row.progress
        visible: row.progress > 0
        width: visible ? Theme.volumeWidth : 0
    }
    Button {
        id: resumeButton

        anchors.right: removeButton.left
        anchors.rightMargin: Theme.spaceXS
        anchors.verticalCenter: parent.verticalCenter
        icon.name: "play"
        objectName: "resumeButton"
        text: row.resumes ? qsTr("Resume") : qsTr("Play")
        Accessible.name: qsTr("%1 %2").arg(text).arg(row.title)
        onClicked: row.resumed()
    }
    IconButton {
        id: removeButton

        anchors.right: parent.right
        anchors.rightMargin: 2 * Theme.spaceM
        anchors.verticalCenter: parent.verticalCenter
        color: Theme.textMuted
        icon.name: "close"
        objectName: "removeButton"
        text: qsTr("Remove from history")
        onClicked: row.removed()
    }
}
