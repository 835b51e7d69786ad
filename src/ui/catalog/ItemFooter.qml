import QtQuick
import Vellum.Catalog
import Vellum.Controls
import Vellum.Theme

// What an item has besides its videos.
Column {
    id: footer

    required property ItemModel model

    bottomPadding: Theme.spaceXL
    spacing: Theme.spaceL
    topPadding: Theme.spaceM

    NoteLine {
        icon: "captions"
        objectName: "itemSubtitles"
        text: footer.model.subtitlesText
        visible: text !== ""
        width: parent.width
    }
    Button {
        // The list cuts off what lies beside it, and the ring of the focus with it.
        anchors.left: parent.left
        anchors.leftMargin: Theme.spaceXS
        icon.name: "torrents"
        objectName: "inspectTorrentButton"
        text: qsTr("Inspect Vidarium .torrent")
        visible: footer.model.hasTorrent
        onClicked: footer.model.inspectTorrent()
    }
}
