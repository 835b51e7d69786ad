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

    // Both may be long: only what is in sight is made. It stands a margin wider than its column, for
    // the rings around what has the focus.
    ListView {
        id: list

        property bool untouched: true
        readonly property RowWalker walker: headerItem?.walker ?? null

        anchors.fill: parent
        anchors.leftMargin: -Theme.spaceM
        anchors.rightMargin: -Theme.spaceM
        boundsBehavior: Flickable.StopAtBounds
        clip: true
        currentIndex: -1
        model: page.model.rows
        objectName: "libraryList"
        reuseItems: true
        section.property: "group"

        // What has been read later stands above.
        onContentHeightChanged: if (untouched)
            positionViewAtBeginning()
        onMovementStarted: untouched = false

        T.ScrollBar.vertical: ScrollBar {
            onPressedChanged: list.untouched = false
        }

        // qmllint disable unqualified
        delegate: LibraryRow {
            required property int index

            current: list.walker?.activeFocus && list.walker.index === index ? list.walker.columnIn(columns) : -1
            first: ListView.previousSection !== group
            width: ListView.view?.width ?? 0
            onPlayed: saved ? page.model.playSaved(key) : page.model.resume(key)
            onRemoved: page.model.remove(key)
        }
        footer: LibraryGap {
            filled: page.model.hasHistory
            icon: "history"
            name: "noHistory"
            text: qsTr("Nothing watched yet.")
            title: qsTr("History")
            width: list.width
        }
        header: LibraryGap {
            readonly property RowWalker walker: rows

            filled: page.model.hasSaved
            icon: "film"
            name: "nothingSaved"
            text: qsTr("Nothing saved yet. Download a file from an Vidarium item to keep it here.")
            title: qsTr("Saved on this Mac")
            width: list.width

            RowWalker {
                id: rows

                name: page.title
                objectName: "libraryRows"
                view: list
                onWalked: list.untouched = false
            }
        }
        // A heading that is used again is told its new `section` only so, not as a required property.
        section.delegate: Label {
            bottomPadding: Theme.spaceS
            font.pixelSize: Theme.fontHeading
            font.weight: Font.Medium
            leftPadding: Theme.spaceM
            objectName: "groupHeading"
            text: section === "saved" ? qsTr("Saved on this Mac") : qsTr("History")
            // The first heading stands where a heading would if nothing was saved.
            topPadding: section === "history" ? Theme.spaceXL : 0
            width: list.width
        }
        // qmllint enable unqualified
    }
    FocusFollow {
        view: list
    }
    ClearHistoryAlert {
        id: question

        onAgreed: page.model.clearHistory()
    }
}
