import QtQuick
import QtQuick.Templates as T
import Vellum.Controls
import Vellum.Player
import Vellum.Theme

// Which subtitles are shown, a file of the user's own, and why one could not be read.
PlayerMenu {
    id: opener

    required property PlayerModel model

    signal fileWanted

    current: model.subtitleIndex
    entries: model.subtitles
    icon.name: "captions"
    objectName: "subtitles"
    text: qsTr("Subtitles")
    onChosen: index => model.chooseSubtitle(index)

    MenuItem {
        objectName: "chooseSubtitleFile"
        text: qsTr("Choose File…")
        onTriggered: opener.fileWanted()
    }
    T.MenuItem {
        id: note

        enabled: false
        implicitHeight: visible ? implicitContentHeight + topPadding + bottomPadding : 0
        objectName: "subtitleError"
        padding: Theme.spaceS
        text: opener.model.subtitleError
        visible: text !== ""
        Accessible.name: text

        contentItem: Text {
            color: Theme.bad
            font.family: Theme.family
            font.pixelSize: Theme.fontSmall
            text: note.text
            textFormat: Text.PlainText
            wrapMode: Text.Wrap
        }
    }
}
