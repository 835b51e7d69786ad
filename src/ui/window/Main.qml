import QtQuick
import QtQuick.Window
import Vellum.Catalog
import Vellum.Controls
import Vellum.Player
import Vellum.Theme
import Vellum.Torrents
import Vellum.Window

// The window: sidebar, section and mini player, or the player over all of it; and what stands above
// both, sheets and alerts. (Not bound: the Loader of Qt 6.4 refuses components that are.)
Window {
    id: window

    required property WindowModel model
    required property Screens screens
    readonly property bool isFullScreen: visibility === Window.FullScreen
    property int visibilityBefore: Window.Windowed

    function toggleFullScreen() {
        if (!isFullScreen)
            visibilityBefore = visibility;
        visibility = isFullScreen ? visibilityBefore : Window.FullScreen;
    }

    color: Theme.background
    height: Theme.windowHeight
    minimumHeight: Theme.windowLowest
    minimumWidth: Theme.windowNarrowest
    // For the file panels, where the desktop has none of its own.
    palette {
        base: Theme.background
        button: Theme.raised
        buttonText: Theme.text
        highlight: Theme.accent
        highlightedText: Theme.accentInk
        light: Theme.raised
        mid: Theme.raised
        text: Theme.text
        window: Theme.panel
        windowText: Theme.text
    }
    title: model.title
    visible: true
    width: Theme.windowWidth

    PlaybackMenu {
        id: playbackMenu

        model: window.model
        onFullScreenWanted: window.toggleFullScreen()
    }

    FocusScope {
        anchors.fill: parent
        focus: !window.model.showsPlayer
        visible: !window.model.showsPlayer

        Sidebar {
            id: sidebar

            height: parent.height
            model: window.model
            onMenuWanted: item => playbackMenu.popup(item)
        }
        SectionView {
            anchors.bottom: miniPlayer.top
            anchors.left: sidebar.right
            anchors.right: parent.right
            anchors.top: parent.top
            focus: true
            screens: window.screens
            section: window.model.section
            onFolderWanted: which => folders.chooseFor(which)
            onTorrentFileWanted: torrentFiles.choose()
        }
        Loader {
            id: miniPlayer

            active: window.model.showsMiniPlayer
            anchors.bottom: parent.bottom
            anchors.left: sidebar.right
            anchors.right: parent.right
            height: active ? implicitHeight : 0

            // qmllint disable unqualified
            sourceComponent: MiniPlayer {
                model: window.screens.player
                onExpandWanted: window.model.expandPlayer()
            }
            // qmllint enable unqualified
        }
    }
    Loader {
        active: window.model.showsPlayer
        anchors.fill: parent
        focus: active

        // qmllint disable unqualified
        sourceComponent: PlayerScreen {
            focus: true
            model: window.screens.player
            onFullScreenWanted: window.toggleFullScreen()
            onMenuWanted: playbackMenu.popupHere()
            onSubtitleFileWanted: subtitleFiles.choose()
        }
        // qmllint enable unqualified
    }
    DropArea {
        anchors.fill: parent
        onDropped: drop => {
            for (const url of drop.urls)
                window.model.openUrl(url);
            if (!drop.hasUrls && drop.hasText)
                window.model.open(drop.text);
        }
    }

    FilePanel {
        id: torrentFiles

        filters: [qsTr("Torrent files (%1)").arg("*.torrent *.TORRENT"), qsTr("All files (%1)").arg("*")]
        title: qsTr("Open .torrent")
        onChosen: file => window.model.inspectFile(file)
    }
    FilePanel {
        id: subtitleFiles

        filters: [qsTr("Subtitles (%1)").arg("*.srt *.vtt *.ass *.ssa"), qsTr("All files (%1)").arg("*")]
        title: qsTr("Choose subtitles")
        onChosen: file => window.screens.player.addSubtitleFile(file)
    }

    FolderPanel {
        id: folders

        onChosen: (which, folder) => {
            if (which === "cache")
                window.screens.settings.setCacheFolder(folder);
            else
                window.screens.settings.setDownloadsFolder(folder);
        }
    }

    ItemSheet {
        model: window.screens.item
    }
    TorrentInspector {
        model: window.screens.inspector
    }
    Alert {
        id: seeders

        readonly property bool wanted: window.model.asksAboutSeeders

        actions: [{ text: qsTr("Try anyway"), role: "default" }, { text: qsTr("Cancel"), role: "cancel" }]
        message: qsTr("This torrent reports 0 seeders, so streaming may never start. You can try anyway.")
        objectName: "zeroSeedAlert"
        title: qsTr("No seeders reported")
        onChosen: index => window.model.answerAboutSeeders(index === 0)
        onWantedChanged: wanted ? open() : close()
    }
    Alert {
        id: notice

        readonly property string wanted: window.model.notice

        objectName: "noticeAlert"
        title: qsTr("Notice")
        onChosen: window.model.dismissNotice()
        // What it says stays while it fades.
        onWantedChanged: {
            if (wanted === "")
                return;
            message = wanted;
            open();
        }
    }
}
