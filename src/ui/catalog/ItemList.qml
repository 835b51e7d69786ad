import QtQuick
import QtQuick.Templates as T
import Vellum.Catalog
import Vellum.Controls
import Vellum.Theme

// All of an item as one list, for it may have thousands of files. (Not bound: the ListView of Qt 6.4
// refuses headers that are.)
ListView {
    id: list

    required property ItemModel item
    property bool untouched: true

    boundsBehavior: Flickable.StopAtBounds
    cacheBuffer: Theme.rowHeight * 4
    clip: true
    currentIndex: -1
    model: item.files
    objectName: "itemList"
    reuseItems: true
    section.property: "group"
    Accessible.name: qsTr("Files")
    Accessible.role: Accessible.List

    // A head that grows would push its own top out of sight.
    onContentHeightChanged: if (untouched)
        positionViewAtBeginning()
    onMovementStarted: untouched = false

    T.ScrollBar.vertical: ScrollBar {}

    Connections {
        function onShownChanged() {
            list.untouched = true;
        }

        target: list.item
    }

    // qmllint disable unqualified
    delegate: ItemFileRow {
        width: ListView.view?.width ?? 0
        onPlayPressed: list.item.play(index)
        onReached: {
            list.untouched = false;
            list.positionViewAtIndex(index, ListView.Contain);
        }
        onSavePressed: list.item.save(index)
    }
    footer: ItemFooter {
        model: list.item
        width: list.width
    }
    header: ItemHeader {
        model: list.item
        width: list.width
    }
    section.delegate: Label {
        required property string section

        font.pixelSize: Theme.fontHeading
        font.weight: Font.Medium
        height: section === "" ? 0 : Theme.rowHeight
        text: section
        visible: section !== ""
        width: list.width
    }
    // qmllint enable unqualified
}
