import QtQuick
import Vellum.Catalog
import Vellum.Controls

// The head of an item's list: what is known of it, and the keyboard's way through its files.
Item {
    id: head

    required property ItemModel model
    required property ListView view
    readonly property int titleEnd: known.titleEnd
    readonly property RowWalker walker: files

    signal walked

    height: known.height
    width: view.width

    ItemHeader {
        id: known

        model: head.model
        width: parent.width
    }
    RowWalker {
        id: files

        name: qsTr("Files")
        objectName: "itemFiles"
        view: head.view
        onWalked: head.walked()
    }
}
