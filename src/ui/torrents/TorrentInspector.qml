import QtQuick
import Vellum.Controls
import Vellum.Theme
import Vellum.Torrents

// A torrent or a magnet link before anything starts. Opens when the model has something to show,
// closes with it, and shows whatever comes while it is open in place of what it had.
Sheet {
    id: sheet

    required property InspectorModel model
    readonly property bool wanted: model.shown

    objectName: "inspector"
    title: model.name
    // Not when it has closed: what arrives while it fades is shown, and not thrown away.
    onAboutToHide: model.close()
    onWantedChanged: wanted ? open() : close()

    TextInput {
        id: hash

        activeFocusOnTab: true
        color: Theme.textMuted
        font.family: Theme.familyMono
        font.pixelSize: Theme.fontSmall
        objectName: "hashLine"
        readOnly: true
        selectByMouse: true
        selectedTextColor: Theme.accentInk
        selectionColor: Theme.accent
        text: sheet.model.hashText
        width: parent?.width ?? 0
        Accessible.name: text
        Accessible.readOnly: true
        Accessible.role: Accessible.EditableText

        FocusRing {
            radius: Theme.radiusS
            shown: hash.activeFocus
        }
    }
    InfoLine {
        icon: "info"
        objectName: "magnetRemark"
        text: qsTr("Magnet links carry no file list; it's fetched by your torrent client once it joins the swarm.")
        visible: !sheet.model.hasFile
        width: parent?.width ?? 0
    }
    Label {
        color: Theme.textMuted
        objectName: "countsLine"
        text: sheet.model.countText
        visible: sheet.model.hasFile
        width: parent?.width ?? 0
    }
    InspectorFiles {
        model: sheet.model
        visible: sheet.model.hasFile
        width: parent?.width ?? 0
    }
    InfoLine {
        icon: "hand"
        text: qsTr("\"Open in Torrent App\" hands the link to the BitTorrent client you've chosen on this Mac. Use Play in the results list to stream with the built-in engine instead.")
        width: parent?.width ?? 0
    }
    Flow {
        spacing: Theme.spaceS
        width: parent?.width ?? 0

        Button {
            objectName: "closeButton"
            text: qsTr("Close")
            onClicked: sheet.close()
        }
        Button {
            objectName: "copyMagnetButton"
            text: qsTr("Copy Magnet")
            visible: sheet.model.hasMagnet
            onClicked: sheet.model.copyMagnet()
        }
        Button {
            objectName: "openMagnetButton"
            text: qsTr("Open in Torrent App")
            visible: sheet.model.hasMagnet
            onClicked: sheet.model.openMagnet()
        }
        Button {
            objectName: "openFileButton"
            text: qsTr("Open .torrent in App")
            visible: sheet.model.hasFile
            onClicked: sheet.model.openFile()
        }
        Button {
            objectName: "revealButton"
            text: qsTr("Reveal")
            visible: sheet.model.hasFile
            onClicked: sheet.model.revealFile()
        }
    }
}
