import QtQuick
import Vellum.Controls
import Vellum.Theme
import Vellum.Torrents

// Which of the results the table shows, and how many those are.
Item {
    id: filters

    required property TorrentSearchModel model

    implicitHeight: row.implicitHeight

    Row {
        id: row

        spacing: Theme.spaceS

        Picker {
            choices: filters.model.resolutions
            label: qsTr("Resolution")
            objectName: "resolutionPicker"
            value: filters.model.resolution
            onPicked: value => filters.model.resolution = value
        }
        Picker {
            choices: filters.model.formats
            label: qsTr("Format")
            objectName: "formatPicker"
            value: filters.model.format
            onPicked: value => filters.model.format = value
        }
        Picker {
            choices: filters.model.maxSizes
            label: qsTr("Max size")
            objectName: "maxSizePicker"
            value: filters.model.maxSizeGB
            onPicked: value => filters.model.maxSizeGB = value
        }
        SourcesButton {
            model: filters.model
            objectName: "sourcesButton"
        }
    }
    Label {
        anchors.left: row.right
        anchors.leftMargin: Theme.spaceM
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        color: Theme.textMuted
        font.pixelSize: Theme.fontSmall
        horizontalAlignment: Text.AlignRight
        objectName: "countLine"
        rightPadding: Theme.spaceS
        text: filters.model.table.countText
    }
}
