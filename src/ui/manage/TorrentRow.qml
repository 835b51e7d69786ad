import QtQuick
import Vellum.Controls
import Vellum.Theme

// One torrent that runs.
Item {
    id: row

    required property string counts
    required property string key
    required property string name
    required property string status
    required property bool streaming

    signal stopped

    implicitHeight: words.implicitHeight + 2 * Theme.spaceM
    objectName: "torrentRow"
    width: parent?.width ?? 0
    Accessible.name: name
    Accessible.role: Accessible.Grouping

    RowLine {}
    Icon {
        id: drawing

        anchors.left: parent.left
        anchors.leftMargin: Theme.spaceL
        anchors.verticalCenter: parent.verticalCenter
        color: row.streaming ? Theme.accent : Theme.textMuted
        name: row.streaming ? "play" : "seed"
    }
    Column {
        id: words

        anchors.left: drawing.right
        anchors.leftMargin: Theme.spaceM
        anchors.right: stopButton.left
        anchors.rightMargin: Theme.spaceM
        anchors.verticalCenter: parent.verticalCenter
        spacing: Theme.spaceXS

        Label {
            horizontalAlignment: Text.AlignLeft
            objectName: "name"
            text: row.name
            width: parent.width
        }
        Row {
            spacing: Theme.spaceS
            width: parent.width

            Label {
                id: statusLabel

                color: row.streaming ? Theme.accent : Theme.textMuted
                font.pixelSize: Theme.fontSmall
                font.weight: Font.Medium
                objectName: "status"
                text: row.status
            }
            Label {
                color: Theme.textMuted
                font.pixelSize: Theme.fontSmall
                objectName: "counts"
                text: row.counts
                width: parent.width - statusLabel.width - parent.spacing
            }
        }
    }
    Button {
        id: stopButton

        anchors.right: parent.right
        anchors.rightMargin: Theme.spaceM
        anchors.verticalCenter: parent.verticalCenter
        icon.name: "stop"
        objectName: "stopButton"
        text: qsTr("Stop")
        Accessible.name: qsTr("Stop %1").arg(row.name)
        onClicked: row.stopped()
    }
}
