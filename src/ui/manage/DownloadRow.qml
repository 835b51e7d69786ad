import QtQuick
import Vellum.Controls
import Vellum.Theme

// One file on its way, or arrived.
Item {
    id: row

    required property string detail
    required property string key
    required property string phase
    required property real progress
    required property string title

    signal cancelled
    signal paused
    signal played
    signal resumed

    implicitHeight: words.implicitHeight + 2 * Theme.spaceM
    objectName: "downloadRow"
    width: parent?.width ?? 0
    Accessible.name: title
    Accessible.role: Accessible.Grouping

    RowLine {}
    Icon {
        id: drawing

        anchors.left: parent.left
        anchors.leftMargin: Theme.spaceL
        anchors.verticalCenter: parent.verticalCenter
        color: row.phase === "failed" ? Theme.bad : row.phase === "finished" ? Theme.good : Theme.textMuted
        name: row.phase === "failed" ? "error" : row.phase === "finished" ? "ok" : "film"
    }
    Column {
        id: words

        anchors.left: drawing.right
        anchors.leftMargin: Theme.spaceM
        anchors.right: buttons.left
        anchors.rightMargin: Theme.spaceM
        anchors.verticalCenter: parent.verticalCenter
        spacing: Theme.spaceXS

        Label {
            horizontalAlignment: Text.AlignLeft
            objectName: "title"
            text: row.title
            width: parent.width
        }
        ProgressBar {
            color: row.phase === "paused" ? Theme.textMuted : Theme.accent
            indeterminate: row.progress < 0 && row.phase === "downloading"
            name: row.title
            objectName: "progress"
            value: Math.max(0, row.progress)
            visible: row.phase === "downloading" || row.phase === "paused"
            width: parent.width
        }
        Label {
            color: row.phase === "failed" ? Theme.bad : Theme.textMuted
            elide: row.phase === "finished" ? Text.ElideMiddle : Text.ElideRight
            font.pixelSize: Theme.fontSmall
            objectName: "state"
            text: row.detail
            width: parent.width
        }
    }
    Row {
        id: buttons

        anchors.right: parent.right
        anchors.rightMargin: Theme.spaceM
        anchors.verticalCenter: parent.verticalCenter
        spacing: Theme.spaceXS

        // One for both, so that it keeps the focus when it is pressed.
        IconButton {
            readonly property bool pauses: row.phase === "downloading"

            icon.name: pauses ? "pause" : "play"
            objectName: pauses ? "pauseButton" : "resumeButton"
            text: pauses ? qsTr("Pause") : qsTr("Resume")
            visible: pauses || row.phase === "paused"
            onClicked: pauses ? row.paused() : row.resumed()
            // What is hidden would still be pressed by Return.
            onVisibleChanged: if (!visible && activeFocus)
                (row.phase === "finished" ? playButton : cancelButton).forceActiveFocus(focusReason)
        }
        Button {
            id: playButton

            icon.name: "play"
            objectName: "playButton"
            text: qsTr("Play")
            visible: row.phase === "finished"
            onClicked: row.played()
        }
        IconButton {
            id: cancelButton

            color: Theme.textMuted
            icon.name: "close"
            objectName: "cancelButton"
            text: qsTr("Cancel / remove")
            onClicked: row.cancelled()
        }
    }
}
