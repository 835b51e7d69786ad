import QtQuick
import Vellum.Controls
import Vellum.Player
import Vellum.Theme
import Vellum.Video

// What plays, at the foot of every other page.
Rectangle {
    id: mini

    required property PlayerModel model
    readonly property int skipSeconds: 10

    signal expandWanted

    color: Theme.panel
    implicitHeight: Theme.miniHeight + 2 * Theme.miniInset
    objectName: "miniPlayer"

    Rectangle {
        color: Theme.hairline
        height: Theme.hairlineWidth
        width: parent.width
    }
    Rectangle {
        id: frame

        color: Theme.video
        height: Theme.miniHeight
        width: Theme.miniWidth
        x: Theme.miniInset
        y: Theme.miniInset

        VideoPicture {
            anchors.fill: parent
            objectName: "miniPicture"
            player: mini.model.player
        }
        // Its inner edge rounds the corners of the picture.
        Rectangle {
            anchors.fill: parent
            anchors.margins: -border.width
            border.color: mini.color
            border.width: Theme.spaceXS
            color: Theme.clear
            radius: Theme.miniRadius + border.width
        }
    }
    Column {
        anchors.left: frame.right
        anchors.leftMargin: Theme.spaceM
        anchors.right: buttons.left
        anchors.rightMargin: Theme.spaceM
        anchors.verticalCenter: parent.verticalCenter
        spacing: Theme.spaceXS

        Label {
            font.weight: Font.Medium
            horizontalAlignment: Text.AlignLeft
            objectName: "miniTitle"
            text: mini.model.stream.title
            width: parent.width
        }
        Label {
            color: Theme.textMuted
            horizontalAlignment: Text.AlignLeft
            objectName: "miniStatus"
            text: mini.model.stream.miniText
            width: parent.width
        }
    }
    Row {
        id: buttons

        anchors.right: parent.right
        anchors.rightMargin: Theme.miniInset
        anchors.verticalCenter: parent.verticalCenter
        spacing: Theme.spaceM

        IconButton {
            icon.name: "back10"
            objectName: "miniSkipBackButton"
            text: qsTr("Back ten seconds")
            onClicked: mini.model.skip(-mini.skipSeconds)
        }
        IconButton {
            icon.name: mini.model.player.isPlaying ? "pause" : "play"
            objectName: "miniPlayPauseButton"
            text: mini.model.player.isPlaying ? qsTr("Pause") : qsTr("Play")
            onClicked: mini.model.toggle()
        }
        IconButton {
            icon.name: "forward10"
            objectName: "miniSkipForwardButton"
            text: qsTr("Forward ten seconds")
            onClicked: mini.model.skip(mini.skipSeconds)
        }
        IconButton {
            icon.name: "fullscreen"
            objectName: "expandButton"
            text: qsTr("Expand")
            onClicked: mini.expandWanted()
        }
        IconButton {
            icon.name: "close"
            objectName: "closePlayerButton"
            text: qsTr("Close player")
            onClicked: mini.model.closeMini()
        }
    }
}
