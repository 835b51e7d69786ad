pragma ComponentBehavior: Bound
import QtQuick
import Vellum.Controls
import Vellum.Torrents

// The heads of the result table's columns.
Row {
    id: header

    required property TableColumns columns
    property int made: 0 // of the heads
    required property TorrentSearchModel model
    // In some languages these words are longer than any number.
    readonly property int numberWidth: made === heads.length ? Math.ceil(Math.max(cells.itemAt(2).implicitWidth, cells.itemAt(3).implicitWidth)) : 0

    readonly property var heads: [
        { text: qsTr("Title"), column: TorrentSearchModel.TitleColumn },
        { text: qsTr("Size"), column: TorrentSearchModel.SizeColumn, isNumber: true },
        { text: qsTr("Seeds"), column: TorrentSearchModel.SeedsColumn, isNumber: true },
        { text: qsTr("Peers"), column: TorrentSearchModel.PeersColumn, isNumber: true },
        { text: qsTr("Quality"), column: -1 },
        { text: qsTr("Format"), column: -1 },
        { text: qsTr("Source"), column: TorrentSearchModel.SourceColumn }
    ]
    // Apart from the words, whose room some of them depend on.
    readonly property list<int> widths: [columns.title, columns.size, columns.number, columns.number, columns.label, columns.format, columns.source]

    leftPadding: columns.play

    Repeater {
        id: cells

        model: header.heads.length
        onItemAdded: header.made += 1

        delegate: HeaderCell {
            required property int index
            readonly property var head: header.heads[index]

            descending: !header.model.sortAscending
            objectName: "column" + index
            rightAligned: head.isNumber ?? false
            sortable: head.column >= 0
            sorted: sortable && header.model.sortColumn === head.column
            text: head.text
            width: header.widths[index]
            onClicked: header.model.sortBy(head.column)
        }
    }
}
