import QtQuick
import Vellum.Controls
import Vellum.Theme

// What went wrong, and what can be done about it.
PlayerCard {
    id: card

    property bool canRetry: true
    property string heading
    property string text

    signal closed
    signal retried

    Accessible.description: text
    Accessible.name: heading !== "" ? heading : text
    Accessible.role: Accessible.AlertMessage

    Icon {
        anchors.horizontalCenter: parent?.horizontalCenter
        color: Theme.warn
        name: "warning"
        size: Theme.iconHuge
    }
    Label {
        font.pixelSize: Theme.fontHeading
        font.weight: Font.Medium
        horizontalAlignment: Text.AlignHCenter
        objectName: "failureHeading"
        text: card.heading
        visible: text !== ""
        width: card.contentWidth
    }
    Label {
        color: Theme.textMuted
        // What a player complains about may be long.
        height: Math.min(implicitHeight, Theme.choicesHeight)
        horizontalAlignment: Text.AlignHCenter
        objectName: "failureText"
        text: card.text
        width: card.contentWidth
        wrapMode: Text.Wrap
    }
    Row {
        anchors.horizontalCenter: parent?.horizontalCenter
        spacing: Theme.spaceS

        Button {
            objectName: "retryButton"
            prominent: true
            text: qsTr("Retry")
            visible: card.canRetry
            onClicked: card.retried()
        }
        Button {
            objectName: "closeButton"
            text: qsTr("Close")
            onClicked: card.closed()
        }
    }
}
