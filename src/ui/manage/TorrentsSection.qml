import QtQuick
import Vellum.Controls
import Vellum.Manage

// How torrents are streamed, and what they give back.
FormSection {
    id: section

    required property SettingsModel model

    note: qsTr("Pressing Play streams the torrent with the built-in engine, which also uploads pieces to other peers while it runs. Peer discovery uses trackers only (no DHT). Unless kept, the cache for a stream is deleted when you close it. Make sure you have the right to access the content.")
    title: qsTr("Torrents & Seeding")

    FormRow {
        id: qualityRow

        text: qsTr("Preferred streaming quality")

        Picker {
            choices: section.model.qualities
            objectName: "qualityPicker"
            value: section.model.quality
            Accessible.name: qsTr("%1: %2").arg(qualityRow.text).arg(current)
            onPicked: value => section.model.quality = value
        }
    }
    FormStepper {
        limits: section.model.uploadLimit
        objectName: "uploadLimit"
        onMoved: value => section.model.setUploadLimit(value)
    }
    FormToggle {
        checked: section.model.stopSeedingOnClose
        objectName: "stopSeedingToggle"
        text: qsTr("Stop seeding when the player closes")
        onToggled: section.model.stopSeedingOnClose = checked
    }
    FormToggle {
        checked: section.model.keepAfterPlayback
        objectName: "keepToggle"
        text: qsTr("Keep downloaded data after playback")
        onToggled: section.model.keepAfterPlayback = checked
    }
}
