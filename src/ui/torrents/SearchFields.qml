import QtQuick
import Vellum.Controls
import Vellum.Theme
import Vellum.Torrents

// The two ways in: words for the providers, or a link that one has already.
Column {
    id: fields

    required property TorrentSearchModel model

    signal torrentFileWanted

    function begin() {
        words.forceActiveFocus();
    }

    spacing: Theme.spaceS

    Item {
        height: words.height
        width: parent.width

        Field {
            id: words

            anchors.left: parent.left
            anchors.right: search.left
            anchors.rightMargin: Theme.spaceS
            focus: true
            icon: "search"
            objectName: "searchField"
            placeholderText: qsTr("Search title or keywords across enabled providers…")
            text: fields.model.query
            onAccepted: fields.model.search()
            onTextChanged: fields.model.query = text
        }
        Button {
            id: search

            anchors.right: parent.right
            objectName: "searchButton"
            prominent: true
            text: qsTr("Search")
            onClicked: fields.model.search()
        }
    }
    Item {
        height: link.height
        width: parent.width

        Field {
            id: link

            anchors.left: parent.left
            anchors.right: inspect.left
            anchors.rightMargin: Theme.spaceS
            icon: "magnet"
            objectName: "magnetField"
            placeholderText: qsTr("Paste magnet link")
            text: fields.model.magnetText
            onAccepted: fields.model.inspectMagnet()
            onTextChanged: fields.model.magnetText = text
        }
        Button {
            id: inspect

            anchors.right: file.left
            anchors.rightMargin: Theme.spaceS
            objectName: "inspectButton"
            text: qsTr("Inspect")
            onClicked: fields.model.inspectMagnet()
        }
        Button {
            id: file

            anchors.right: parent.right
            objectName: "openTorrentButton"
            text: qsTr("Open .torrent…")
            onClicked: fields.torrentFileWanted()
        }
    }
}
