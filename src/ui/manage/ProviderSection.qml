pragma ComponentBehavior: Bound
import QtQuick
import Vellum.Controls
import Vellum.Manage
import Vellum.Theme

// The providers, one row each, and the way to one more.
Column {
    id: section

    property ProviderRowModel doomed // whose removal is asked about
    required property SettingsModel model

    spacing: Theme.spaceS
    width: parent?.width ?? 0

    FormSection {
        title: qsTr("Metadata Providers")

        Repeater {
            model: section.model.providers.rows

            delegate: ProviderRow {
                onRemovalWanted: {
                    section.doomed = row;
                    question.open();
                }
            }
        }
    }
    Button {
        icon.name: "plus"
        objectName: "addProviderButton"
        text: qsTr("Add Provider…")
        onClicked: sheet.open()
    }
    Label {
        color: Theme.textFaint
        font.pixelSize: Theme.fontSmall
        leftPadding: Theme.spaceXS
        text: qsTr("Providers are queried only when you search, and only for metadata. Third-party index availability and legality vary by region; you're responsible for what you access.")
        width: parent.width
        wrapMode: Text.Wrap
    }
    AddProviderSheet {
        id: sheet

        model: section.model.addition
        objectName: "addProviderSheet"
    }
    Alert {
        id: question

        actions: [
            { text: qsTr("Cancel"), role: "cancel" },
            { text: qsTr("Remove"), role: "destructive" }
        ]
        message: qsTr("Its addresses and its API key are forgotten.")
        objectName: "removeProviderAlert"
        title: qsTr("Remove “%1”?").arg(section.doomed?.name ?? "")
        onChosen: index => {
            if (index === 1)
                section.doomed?.remove();
            section.doomed = null;
        }
    }
}
