import QtQuick
import Vellum.Controls
import Vellum.Player
import Vellum.Theme

// Whether the film is heard, and how loud.
Row {
    id: volume

    required property PlayerModel model

    IconButton {
        focusPolicy: Qt.StrongFocus
        icon.name: volume.model.isSilent ? "muted" : "volume"
        objectName: "muteButton"
        text: volume.model.player.isMuted ? qsTr("Unmute") : qsTr("Mute")
        onClicked: volume.model.toggleMuted()
    }
    Slider {
        anchors.verticalCenter: parent?.verticalCenter
        name: qsTr("Volume")
        objectName: "volumeSlider"
        value: volume.model.player.volume
        width: Theme.volumeWidth
        onMoved: volume.model.setVolume(value)
    }
}
