pragma ComponentBehavior: Bound
import QtQuick
import Vellum.Controls
import Vellum.Manage
import Vellum.Theme

// The films of the downloads folder.
FormSection {
    id: section

    required property LibraryModel model

    title: qsTr("Saved on this Mac")

    EmptyState {
        height: implicitHeight + 2 * Theme.spaceXXL
        icon: "film"
        objectName: "nothingSaved"
        text: qsTr("Nothing saved yet. Download a file from an Vidarium item to keep it here.")
        visible: !section.model.hasSaved
        width: parent.width
    }
    Repeater {
        model: section.model.saved

        delegate: SavedRow {
            onPlayed: section.model.playSaved(key)
        }
    }
}
