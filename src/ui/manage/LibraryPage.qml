import QtQuick
import QtQuick.Templates as T
import Vellum.Controls
import Vellum.Manage
import Vellum.Theme

// The files that were saved, and what was watched. (Not bound: the list of Qt 6.4 refuses headers
// that are.)
ManagePage {
    id: page

    required property LibraryModel model

    action: qsTr("Clear History")
    actionEnabled: model.hasHistory
    objectName: "libraryPage"
    title: qsTr("Library")
    onActed: question.open()
    Component.onCompleted: model.open()

    // The history may be long: only what is in sight is made. It stands a margin wider than its
    // column, for the rings around what has the focus.
    ListView {
        id: list

        // What stands over the rows grows upwards when the saved files have been read.
        property bool atTop: true

        anchors.fill: parent
        anchors.leftMargin: -Theme.spaceM
        anchors.rightMargin: -Theme.spaceM
        boundsBehavior: Flickable.StopAtBounds
        clip: true
        model: page.model.history
        objectName: "historyList"
        onContentYChanged: atTop = contentY <= originY + Theme.spaceS

        T.ScrollBar.vertical: ScrollBar {}

        // qmllint disable unqualified
        delegate: HistoryRow {
            required property int index

            first: index === 0
            width: ListView.view.width
            onRemoved: page.model.remove(key)
            onResumed: page.model.resume(key)
        }
        footer: Item {
            height: Theme.spaceXL
            width: list.width
        }
        header: Item {
            height: sections.implicitHeight + Theme.spaceS
            width: list.width
            onHeightChanged: if (list.atTop)
                Qt.callLater(list.positionViewAtBeginning)

            Column {
                id: sections

                spacing: Theme.spaceXL
                width: parent.width - 2 * Theme.spaceM
                x: Theme.spaceM

                SavedSection {
                    model: page.model
                }
                FormSection {
                    title: qsTr("History")

                    EmptyState {
                        height: implicitHeight + 2 * Theme.spaceXXL
                        icon: "history"
                        objectName: "noHistory"
                        text: qsTr("Nothing watched yet.")
                        visible: !page.model.hasHistory
                        width: parent.width
                    }
                }
            }
        }
    }
    FocusFollow {
        view: list
    }
    // qmllint enable unqualified
    ClearHistoryAlert {
        id: question

        onAgreed: page.model.clearHistory()
    }
}
