pragma ComponentBehavior: Bound
import QtQuick
import Vellum.Controls
import Vellum.Torrents

// The heads of the result table's columns.
Row {
    id: header

    required property TableColumns columns
    required property TorrentSearchModel model

    readonly property var heads: [
        { text: qsTr("Title"), width: columns.title, column: TorrentSearchModel.TitleColumn },
        { text: qsTr("Size"), width: columns.size, column: TorrentSearchModel.SizeColumn, isNumber: true },
        { text: qsTr("Seeds"), width: columns.number, column: TorrentSearchModel.SeedsColumn, isNumber: true },
        { text: qsTr("Peers"), width: columns.number, column: TorrentSearchModel.PeersColumn, isNumber: true },
        { text: qsTr("Quality"), width: columns.label, column: -1 },
        { text: qsTr("Format"), width: columns.format, column: -1 },
        { text: qsTr("Source"), width: columns.source, column: TorrentSearchModel.SourceColumn }
    ]

    leftPadding: columns.play

    Repeater {
        model: header.heads.length

        delegate: HeaderCell {
            required property int index
            readonly property var head: header.heads[index]

            descending: !header.model.sortAscending
            objectName: "column" + index
            rightAligned: head.isNumber ?? false
            sortable: head.column >= 0
            sorted: sortable && header.model.sortColumn === head.column
            text: head.text
            width: head.width
            onClicked: header.model.sortBy(head.column)
        }
    }
}
