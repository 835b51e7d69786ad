import QtQuick
import Vellum.Controls
import Vellum.Theme

// One file of the torrent that is inspected; `kind` is "video", "subtitles" or "other".
Item {
    id: file

    required property string kind
    required property string name
    required property string size

    implicitHeight: Theme.controlHeight
    Accessible.name: qsTr("%1, %2").arg(name).arg(size)
    Accessible.role: Accessible.ListItem

    Icon {
        id: drawing

        anchors.verticalCenter: parent.verticalCenter
        color: file.kind === "other" ? Theme.textFaint : Theme.accent
        name: file.kind === "video" ? "film" : file.kind === "subtitles" ? "captions" : "file"
        x: Theme.spaceS
    }
    Label {
        anchors.left: drawing.right
        anchors.leftMargin: Theme.spaceS
        anchors.right: bytes.left
        anchors.rightMargin: Theme.spaceM
        color: file.kind === "other" ? Theme.textMuted : Theme.text
        elide: Text.ElideMiddle
        height: parent.height
        text: file.name
        Accessible.ignored: true
    }
    CellText {
        id: bytes

        anchors.right: parent.right
        isNumber: true
        text: file.size
    }
}
