import QtQuick
import Vellum.Controls
import Vellum.Theme

// One file that was saved.
Item {
    id: row

    required property string key
    required property string name
    required property string size

    signal played

    implicitHeight: Theme.rowHeight
    objectName: "savedRow"
    width: parent?.width ?? 0
    Accessible.name: name
    Accessible.role: Accessible.Grouping

    RowLine {}
    Icon {
        id: drawing

        anchors.left: parent.left
        anchors.leftMargin: Theme.spaceL
        anchors.verticalCenter: parent.verticalCenter
        color: Theme.textMuted
        name: "film"
    }
    Label {
        anchors.left: drawing.right
        anchors.leftMargin: Theme.spaceM
        anchors.right: sizeLabel.left
        anchors.rightMargin: Theme.spaceM
        anchors.verticalCenter: parent.verticalCenter
        elide: Text.ElideMiddle
        horizontalAlignment: Text.AlignLeft
        objectName: "name"
        text: row.name
    }
    Label {
        id: sizeLabel

        anchors.right: playButton.left
        anchors.rightMargin: Theme.spaceM
        anchors.verticalCenter: parent.verticalCenter
        color: Theme.textMuted
        font.pixelSize: Theme.fontSmall
        text: row.size
    }
    Button {
        id: playButton

        anchors.right: parent.right
        anchors.rightMargin: Theme.spaceM
        anchors.verticalCenter: parent.verticalCenter
        icon.name: "play"
        objectName: "playButton"
        text: qsTr("Play")
        Accessible.name: qsTr("Play %1").arg(row.name)
        onClicked: row.played()
    }
}
