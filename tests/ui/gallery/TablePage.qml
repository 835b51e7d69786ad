pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Layouts
import Vellum.Controls
import Vellum.Theme

// A table's head, some rows under it, banners, and an empty state.
ColumnLayout {
    id: page

    property int sorted: 2
    property bool descending: true
    readonly property var columns: ["Title", "Size", "Seeds", "Quality"]
    readonly property var rows: [
        ["Night of the Living Dead (1968) in a scan of the original negative, with commentary and extras", "1.25 GB", "1,204", "1080p"],
        ["الفيلم الطويل جدا الذي لا يتسع له العمود", "711 MB", "87", "720p"],
        ["Detour", "98 KB", "1", "SD"]
    ]

    function widthOf(column: int): int {
        return column === 0 ? Theme.sentenceWidth - Theme.spaceHuge : Theme.posterWidth - Theme.spaceHuge;
    }

    spacing: Theme.spaceM

    Row {
        Repeater {
            model: page.columns

            delegate: HeaderCell {
                required property int index
                required property string modelData

                descending: page.descending
                objectName: "column" + index
                rightAligned: index === 1 || index === 2
                sortable: index !== 3
                sorted: page.sorted === index
                text: modelData
                width: page.widthOf(index)
                onClicked: {
                    page.descending = page.sorted === index && !page.descending;
                    page.sorted = index;
                }
            }
        }
    }
    Repeater {
        model: page.rows

        delegate: Row {
            id: row

            required property var modelData

            Repeater {
                model: row.modelData

                delegate: Label {
                    required property int index
                    required property string modelData

                    horizontalAlignment: index === 1 || index === 2 ? Text.AlignRight : Text.AlignLeft
                    leftPadding: Theme.spaceS
                    rightPadding: Theme.spaceS + (page.sorted === index ? Theme.fontSmall + Theme.spaceXS : 0)
                    text: modelData
                    width: page.widthOf(index)
                }
            }
        }
    }
    Banner {
        property int pressed: 0

        Layout.fillWidth: true
        action: "Open Settings"
        objectName: "banner"
        text: "Example Index: the API key was refused. Check the key in Settings."
        onTriggered: ++pressed
    }
    Banner {
        Layout.fillWidth: true
        kind: "bad"
        text: "Another Index: every one of its addresses failed, the last one with a sentence of such length that it does not fit into two lines at all and therefore has to end in an ellipsis somewhere before it has come to what it really wanted to tell the reader of it, who may read on in the tooltip."
    }
    Banner {
        Layout.fillWidth: true
        kind: "info"
        text: "Searching only reads metadata; a torrent starts only when you press Play."
    }
    EmptyState {
        Layout.fillHeight: true
        Layout.fillWidth: true
        action: "Retry"
        icon: "offline"
        text: "Couldn't reach Vidarium: the connection was refused."
    }
}
