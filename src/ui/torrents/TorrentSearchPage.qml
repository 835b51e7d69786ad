import QtQuick
import Vellum.Controls
import Vellum.Theme
import Vellum.Torrents

// Torrent search: one field over all enabled providers, what they answer, and the ways into
// playing and inspecting it. `torrentFileWanted` asks the window to let the user choose a file.
FocusScope {
    id: page

    required property TorrentSearchModel model
    // What failed providers may take of the height before their reasons scroll.
    readonly property int bannersHighest: Math.max(Theme.rowHeight, height / 6)

    signal torrentFileWanted

    objectName: "torrentSearchPage"
    Accessible.name: qsTr("Torrent Search")
    Accessible.role: Accessible.Pane
    Component.onCompleted: fields.begin()

    Column {
        id: top

        anchors.left: parent.left
        anchors.margins: Theme.spaceL
        anchors.right: parent.right
        anchors.top: parent.top
        spacing: Theme.spaceM

        Label {
            font.pixelSize: Theme.fontTitle
            font.weight: Font.DemiBold
            text: qsTr("Torrent Search")
            width: parent.width
        }
        InfoLine {
            icon: "info"
            text: qsTr("Searching only reads metadata; a torrent starts only when you press Play (which also uploads to peers while it runs — see Settings). Results come from third-party indexes; their legality isn't verified. Only use content you have the right to access.")
            width: parent.width
        }
        SearchFields {
            id: fields

            model: page.model
            width: parent.width
            onTorrentFileWanted: page.torrentFileWanted()
        }
        InfoLine {
            color: Theme.warn
            icon: "warning"
            objectName: "noProviders"
            text: qsTr("No providers enabled — enable some in Settings.")
            visible: !page.model.hasProviders
            width: parent.width
        }
        SearchStatus {
            highest: page.bannersHighest
            model: page.model
            visible: page.model.statuses.length > 0
            width: parent.width
        }
        SearchFilters {
            model: page.model
            width: parent.width
        }
    }
    ResultTable {
        id: table

        anchors.bottom: parent.bottom
        anchors.left: top.left
        anchors.right: top.right
        anchors.top: top.bottom
        anchors.topMargin: Theme.spaceS
        model: page.model
        visible: page.model.emptyText === ""
    }
    SkeletonRows {
        anchors.fill: table
        objectName: "skeleton"
        text: page.model.emptyText
        visible: !table.visible && page.model.searching
    }
    EmptyState {
        anchors.fill: table
        icon: "search"
        objectName: "emptyState"
        text: page.model.emptyText
        visible: !table.visible && !page.model.searching
    }
}
