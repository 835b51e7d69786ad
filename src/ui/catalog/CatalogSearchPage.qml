import QtQuick
import Vellum.Catalog
import Vellum.Controls
import Vellum.Theme

// The search in the film catalog.
Item {
    id: page

    required property CatalogSearchModel model

    objectName: "searchPage"
    Accessible.name: qsTr("Search")
    Accessible.role: Accessible.Pane
    Component.onCompleted: field.forceActiveFocus()

    Column {
        id: top

        anchors.left: parent.left
        anchors.margins: Theme.spaceL
        anchors.right: parent.right
        anchors.top: parent.top
        spacing: Theme.spaceM

        Item {
            height: modes.height
            width: parent.width

            Label {
                anchors.left: parent.left
                anchors.right: busy.left
                anchors.verticalCenter: parent.verticalCenter
                font.pixelSize: Theme.fontTitle
                font.weight: Font.DemiBold
                text: qsTr("Search")
            }
            Spinner {
                id: busy

                anchors.right: modes.left
                anchors.rightMargin: Theme.spaceS
                anchors.verticalCenter: parent.verticalCenter
                objectName: "searchSpinner"
                running: page.model.searching
                visible: running
            }
            ViewModeToggle {
                id: modes

                anchors.right: parent.right
                gridView: page.model.gridView
                onPicked: grid => page.model.gridView = grid
            }
        }
        Item {
            height: field.height
            width: parent.width

            Field {
                id: field

                anchors.left: parent.left
                anchors.right: button.left
                anchors.rightMargin: Theme.spaceS
                icon: "search"
                objectName: "searchField"
                placeholderText: qsTr("Search Vidarium films, documentaries, shorts…")
                text: page.model.query
                onAccepted: page.model.search()
                onTextChanged: page.model.query = text
            }
            Button {
                id: button

                anchors.right: parent.right
                objectName: "searchButton"
                prominent: true
                text: qsTr("Search", "to press")
                onClicked: page.model.search()
            }
        }
        Label {
            color: Theme.textMuted
            text: qsTr("Search the Internet Archive's public video catalog. For torrent sources, use Torrent Search.")
            width: parent.width
            wrapMode: Text.Wrap
        }
        Banner {
            kind: "bad"
            objectName: "searchError"
            text: page.model.errorText
            visible: text !== ""
            width: parent.width
        }
    }
    MediaGrid {
        anchors.bottom: parent.bottom
        anchors.left: parent.left
        anchors.leftMargin: Theme.spaceS
        anchors.right: parent.right
        anchors.rightMargin: Theme.spaceS
        anchors.top: top.bottom
        anchors.topMargin: Theme.spaceS
        emptyIcon: "search"
        emptyText: page.model.emptyText
        gridView: page.model.gridView
        list: page.model.results
        loading: page.model.searching
    }
}
