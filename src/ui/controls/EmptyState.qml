import QtQuick
import Vellum.Theme

// What a screen shows when it has nothing to show: a drawing, one sentence, at most one action.
Item {
    id: empty

    property string action
    property alias icon: drawing.name
    property string text

    signal triggered

    implicitHeight: column.implicitHeight
    implicitWidth: Theme.sentenceWidth
    Accessible.name: text
    Accessible.role: Accessible.StaticText

    Column {
        id: column

        anchors.centerIn: parent
        spacing: Theme.spaceL
        width: Math.min(parent.width, Theme.sentenceWidth)

        Icon {
            id: drawing

            anchors.horizontalCenter: parent.horizontalCenter
            color: Theme.textFaint
            size: Theme.iconHuge
        }
        Label {
            color: Theme.textMuted
            font.pixelSize: Theme.fontHeading
            horizontalAlignment: Text.AlignHCenter
            text: empty.text
            width: parent.width
            wrapMode: Text.Wrap
            Accessible.ignored: true
        }
        Button {
            anchors.horizontalCenter: parent.horizontalCenter
            text: empty.action
            visible: text !== ""
            onClicked: empty.triggered()
        }
    }
}
