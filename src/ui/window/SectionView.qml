import QtQuick
import Vellum.Catalog
import Vellum.Manage
import Vellum.Torrents
import Vellum.Window

// The screen of one section. What a screen knows lasts as long as its section is shown.
// (Not bound: the Loader of Qt 6.4 refuses components that are.)
FocusScope {
    id: view

    required property Screens screens
    required property string section

    signal folderWanted(string which)
    signal torrentFileWanted

    Loader {
        anchors.fill: parent
        focus: true
        sourceComponent: switch (view.section) {
        case "discover": return discover;
        case "search": return search;
        case "torrents": return torrents;
        case "library": return library;
        case "downloads": return downloads;
        case "settings": return settings;
        default: return home;
        }
    }
    // qmllint disable unqualified
    Component {
        id: home

        HomePage {
            focus: true
            model: view.screens.home
        }
    }
    Component {
        id: discover

        DiscoverPage {
            focus: true
            model: view.screens.discover
        }
    }
    Component {
        id: search

        CatalogSearchPage {
            focus: true
            model: view.screens.search
        }
    }
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
        id: library

        LibraryPage {
            focus: true
            model: view.screens.library
        }
    }
    Component {
        id: downloads

        DownloadsPage {
            focus: true
            model: view.screens.downloads
        }
    }
    Component {
        id: settings

        SettingsPage {
            focus: true
            model: view.screens.settings
            onFolderWanted: which => view.folderWanted(which)
        }
    }
    // qmllint enable unqualified
}
