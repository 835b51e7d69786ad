import QtQuick
import Vellum.Controls

// Asks before the history is emptied.
Alert {
    id: question

    signal agreed

    actions: [
        { text: qsTr("Cancel"), role: "cancel" },
        { text: qsTr("Clear History"), role: "destructive" }
    ]
    message: qsTr("Vellum forgets what you have watched and where you stopped. No file is removed.")
    objectName: "clearHistoryAlert"
    title: qsTr("Clear the watch history?")
    onChosen: index => {
        if (index === 1)
            agreed();
    }
}
