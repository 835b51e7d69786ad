pragma ComponentBehavior: Bound
import QtQuick
import Vellum.Controls
import Vellum.Manage
import Vellum.Theme

// What is being saved, and the torrents that run.
ManagePage {
    id: page

    required property DownloadsModel model

    action: qsTr("Clear Finished")
    actionEnabled: model.hasFinished
    objectName: "downloadsPage"
    title: qsTr("Downloads")
    onActed: model.clearFinished()
    Component.onCompleted: model.open()

    FormScroll {
        id: scroll

        Column {
            spacing: Theme.spaceM
            width: parent.width

            Label {
                color: Theme.textMuted
                objectName: "freeSpace"
                text: page.model.freeSpace
                width: parent.width
            }
            EmptyState {
                height: implicitHeight + 2 * Theme.spaceHuge
                icon: "downloads"
                objectName: "noDownloads"
                text: qsTr("No active downloads.")
                visible: !page.model.hasTasks
                width: parent.width
            }
            FormSection {
                note: qsTr("Downloads restart from scratch (or from pause) if the app quits mid-transfer; finished files are always kept.")

                Repeater {
                    model: page.model.tasks

                    delegate: DownloadRow {
                        onCancelled: page.model.cancel(key)
                        onPaused: page.model.pause(key)
                        onPlayed: page.model.play(key)
                        onResumed: page.model.resume(key)
                    }
                }
            }
        }
        FormSection {
            title: qsTr("Torrent streams & seeding")

            FormRow {
                objectName: "noTorrents"
                text: qsTr("No torrents are running.")
                visible: !page.model.hasTorrents
            }
            Repeater {
                model: page.model.torrents

                delegate: TorrentRow {
                    onStopped: page.model.stopTorrent(key)
                }
            }
        }
    }
}
