import QtQuick
import QtQuick.Window
import Vellum.Controls
import Vellum.Player
import Vellum.Theme

// What steers the film, at the foot of the picture.
Item {
    id: controls

    required property PlayerModel model
    readonly property bool hasOpenMenu: audio.isOpen || speed.isOpen || aspect.isOpen || subtitles.isOpen
    readonly property int skipSeconds: 10

    signal fullScreenWanted
    signal subtitleFileWanted

    implicitHeight: rows.height + 2 * Theme.spaceL

    Column {
        id: rows

        anchors.left: parent.left
        anchors.margins: Theme.spaceL
        anchors.right: parent.right
        anchors.top: parent.top
        spacing: Theme.spaceXS

        PlayerTimeline {
            model: controls.model
            width: parent.width
        }
        Item {
            height: play.height
            width: parent.width

            Row {
                anchors.verticalCenter: parent.verticalCenter
                spacing: Theme.spaceS

                IconButton {
                    anchors.verticalCenter: parent?.verticalCenter
                    icon.name: "back10"
                    objectName: "skipBackButton"
                    size: Theme.iconL
                    text: qsTr("Back ten seconds")
                    onClicked: controls.model.skip(-controls.skipSeconds)
                }
                IconButton {
                    id: play

                    icon.name: controls.model.player.isPlaying ? "pause" : "play"
                    objectName: "playPauseButton"
                    size: Theme.spaceXXL
                    text: controls.model.player.isPlaying ? qsTr("Pause") : qsTr("Play")
                    onClicked: controls.model.toggle()
                }
                IconButton {
                    anchors.verticalCenter: parent?.verticalCenter
                    icon.name: "forward10"
                    objectName: "skipForwardButton"
                    size: Theme.iconL
                    text: qsTr("Forward ten seconds")
                    onClicked: controls.model.skip(controls.skipSeconds)
                }
                PlayerVolume {
                    anchors.verticalCenter: parent?.verticalCenter
                    model: controls.model
                }
            }
            Row {
                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter
                spacing: Theme.spaceS

                PlayerMenu {
                    id: audio

                    current: controls.model.audioIndex
                    entries: controls.model.audioOptions
                    icon.name: "audio"
                    objectName: "audio"
                    text: qsTr("Audio track")
                    visible: controls.model.audioOptions.length > 1
                    onChosen: index => controls.model.chooseAudio(index)
                }
                PlayerMenu {
                    id: speed

                    current: controls.model.speedIndex
                    entries: controls.model.speeds
                    icon.name: "speed"
                    objectName: "speed"
                    text: qsTr("Playback speed")
                    onChosen: index => controls.model.chooseSpeed(index)
                }
                PlayerMenu {
                    id: aspect

                    current: controls.model.aspectIndex
                    entries: controls.model.aspects
                    icon.name: "aspect"
                    objectName: "aspect"
                    text: qsTr("Aspect ratio")
                    onChosen: index => controls.model.chooseAspect(index)
                }
                SubtitleMenu {
                    id: subtitles

                    model: controls.model
                    onFileWanted: controls.subtitleFileWanted()
                }
                IconButton {
                    icon.name: Window.visibility === Window.FullScreen ? "fullscreen-exit" : "fullscreen"
                    objectName: "fullScreenButton"
                    text: qsTr("Full screen")
                    onClicked: controls.fullScreenWanted()
                }
            }
        }
    }
}
