import QtQuick
import Vellum.Controls
import Vellum.Theme

// Posters or a list; the choice is the owner's.
Row {
    id: toggle

    required property bool gridView

    signal picked(bool grid)

    spacing: Theme.spaceXS

    IconButton {
        checked: toggle.gridView
        icon.name: "grid"
        objectName: "gridButton"
        text: qsTr("Grid")
        Accessible.checkable: true
        Accessible.checked: checked
        onClicked: toggle.picked(true)
    }
    IconButton {
        checked: !toggle.gridView
        icon.name: "list"
        objectName: "listButton"
        text: qsTr("List")
        Accessible.checkable: true
        Accessible.checked: checked
        onClicked: toggle.picked(false)
    }
}
