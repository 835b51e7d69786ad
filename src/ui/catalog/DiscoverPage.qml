pragma ComponentBehavior: Bound
import QtQuick
import Vellum.Catalog
import Vellum.Controls
import Vellum.Theme

// The collections of the catalog.
Item {
    id: page

    required property DiscoverModel model

    objectName: "discoverPage"
    Accessible.name: qsTr("Discover")
    Accessible.role: Accessible.Pane
    Component.onCompleted: model.appear()

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
                text: qsTr("Discover")
            }
            Spinner {
                id: busy

                anchors.right: modes.left
                anchors.rightMargin: Theme.spaceS
                anchors.verticalCenter: parent.verticalCenter
                objectName: "discoverSpinner"
                running: page.model.loading
                visible: running
            }
            ViewModeToggle {
                id: modes

                anchors.right: parent.right
                gridView: page.model.gridView
                onPicked: grid => page.model.gridView = grid
            }
        }
        Label {
            color: Theme.textMuted
            text: qsTr("Pick a collection to browse real Vidarium catalog entries.")
            width: parent.width
        }
        Flow {
            spacing: Theme.spaceS
            width: parent.width

            Repeater {
                model: page.model.collections

                delegate: Chip {
                    required property var modelData

                    checked: page.model.current === modelData.id
                    objectName: "collection-" + modelData.id
                    text: modelData.title
                    Accessible.checkable: true
                    onClicked: page.model.choose(modelData.id)
                }
            }
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
        emptyIcon: "discover"
        emptyText: qsTr("Nothing to show in this collection.")
        gridView: page.model.gridView
        list: page.model.results
        loading: page.model.loading
    }
}
