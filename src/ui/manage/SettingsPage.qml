import QtQuick
import Vellum.Manage

// The settings. `folderWanted` asks the window to let the user choose a folder, for "cache" or for
// "downloads"; the answer goes to the model.
ManagePage {
    id: page

    required property SettingsModel model

    signal folderWanted(string which)

    objectName: "settingsPage"
    title: qsTr("Settings")
    Component.onCompleted: model.open()

    FormScroll {
        objectName: "settingsScroll"

        ProviderSection {
            model: page.model
        }
        StorageSection {
            model: page.model
            onFolderWanted: which => page.folderWanted(which)
        }
        TorrentsSection {
            model: page.model
        }
        FormSection {
            note: qsTr("Vidarium content is streamed directly from vidarium. Licensing is shown when the catalog provides it; don't assume an item is public domain.")
            title: qsTr("About Sources")
        }
    }
}
