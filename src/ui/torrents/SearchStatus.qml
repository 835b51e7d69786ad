pragma ComponentBehavior: Bound
import QtQuick
import Vellum.Controls
import Vellum.Theme
import Vellum.Torrents

// What each provider answered, and why one did not. Both scroll rather than push the table away.
Column {
    id: status

    required property TorrentSearchModel model
    property int highest: 0 // of the reasons

    spacing: Theme.spaceS

    ScrollBox {
        highest: 2 * Theme.chipHeight + Theme.spaceXS
        visible: chips.count > 0
        width: parent.width

        Flow {
            spacing: Theme.spaceXS
            width: parent.width

            Repeater {
                id: chips

                // A number, so that an answer changes its own chip and the others spin on.
                model: status.model.statuses.length

                delegate: ProviderChip {
                    required property int index
                    readonly property var provider: status.model.statuses[index]

                    objectName: "provider" + index
                    progress: provider?.state ?? ""
                    text: provider?.text ?? ""
                    width: Math.min(implicitWidth, status.width)
                }
            }
        }
    }
    ScrollBox {
        highest: status.highest
        objectName: "banners"
        spacing: Theme.spaceXS
        visible: banners.count > 0
        width: parent.width

        Repeater {
            id: banners

            model: status.model.banners.length

            delegate: Banner {
                required property int index
                readonly property var failure: status.model.banners[index]

                action: failure?.offersSettings ? qsTr("Open Settings") : ""
                objectName: "banner" + index
                text: failure?.text ?? ""
                width: status.width
                onTriggered: status.model.openSettings()
            }
        }
    }
}
