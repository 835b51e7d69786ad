import QtQuick
import Vellum.Controls
import Vellum.Manage

// Where the program keeps things, how much of the disk it may take, and how to get that back.
FormSection {
    id: section

    required property SettingsModel model

    signal folderWanted(string which)

    note: qsTr("Cleanup only touches the cache folder. Files in the saved downloads folder are never removed automatically.")
    title: qsTr("Storage")

    FolderRow {
        objectName: "cacheFolder"
        path: section.model.cacheFolder
        text: qsTr("Cache folder")
        onChosen: section.folderWanted("cache")
    }
    FolderRow {
        objectName: "downloadsFolder"
        path: section.model.downloadsFolder
        text: qsTr("Saved downloads folder")
        onChosen: section.folderWanted("downloads")
    }
    FormStepper {
        limits: section.model.cacheLimit
        objectName: "cacheLimit"
        onMoved: value => section.model.setCacheLimit(value)
    }
    FormStepper {
        limits: section.model.cacheAge
        objectName: "cacheAge"
        onMoved: value => section.model.setCacheAge(value)
    }
    FormRow {
        objectName: "usage"
        text: section.model.usage

        Button {
            objectName: "cleanButton"
            text: qsTr("Clean Now")
            onClicked: section.model.clean()
        }
        Button {
            objectName: "clearCacheButton"
            text: qsTr("Clear Cache")
            onClicked: section.model.clearCache()
        }
    }
    FormRow {
        text: qsTr("Watch history")

        Button {
            destructive: true
            enabled: section.model.hasHistory
            objectName: "clearHistoryButton"
            text: qsTr("Clear Watch History")
            onClicked: question.open()
        }
    }
    ClearHistoryAlert {
        id: question

        onAgreed: section.model.clearHistory()
    }
}
