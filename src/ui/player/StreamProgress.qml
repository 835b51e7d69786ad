pragma ComponentBehavior: Bound
import QtQuick
import Vellum.Controls
import Vellum.Player
import Vellum.Theme

// How far a stream is on its way to a picture.
PlayerCard {
    id: progress

    required property StreamModel stream

    signal cancelled

    Label {
        font.pixelSize: Theme.fontHeading
        font.weight: Font.Medium
        horizontalAlignment: Text.AlignHCenter
        objectName: "stageText"
        text: progress.stream.stageText
        width: progress.contentWidth
    }
    Label {
        color: Theme.textMuted
        horizontalAlignment: Text.AlignHCenter
        objectName: "streamNumbers"
        text: progress.stream.numbers
        width: progress.contentWidth
    }
    Row {
        anchors.horizontalCenter: parent?.horizontalCenter
        objectName: "stageDots"
        spacing: Theme.spaceS

        Repeater {
            model: 5

            delegate: Rectangle {
                required property int index

                color: index <= progress.stream.stage ? Theme.accent : Theme.track
                height: Theme.stageDot
                radius: height / 2
                width: Theme.stageDot
            }
        }
    }
    Button {
        anchors.horizontalCenter: parent?.horizontalCenter
        objectName: "cancelButton"
        text: qsTr("Cancel")
        onClicked: progress.cancelled()
    }
}
