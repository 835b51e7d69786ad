import QtQuick
import Vellum.Theme
import Vellum.Torrents
import Vellum.Window

// The screen of one section. What a screen knows lasts as long as its section is shown.
// (Not bound: the Loader of Qt 6.4 refuses components that are.)
FocusScope {
    id: view

    required property Screens screens
    required property string section

    signal torrentFileWanted

    Loader {
        anchors.fill: parent
        focus: true
        sourceComponent: view.section === "torrents" ? torrents : toCome
    }
    // qmllint disable unqualified
    Component {
        id: torrents

        TorrentSearchPage {
            id: page

            focus: true
            model: view.screens.torrentSearch(page)
            onTorrentFileWanted: view.torrentFileWanted()
        }
    }
    Component {
        id: toCome

        ToComePage {
            section: view.section
        }
    }
    // qmllint enable unqualified
}
