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
    readonly property bool titlePassed: contentY > originY + ((headerItem as ItemListHead)?.titleEnd ?? 0)
    property bool untouched: true
    readonly property RowWalker walker: (headerItem as ItemListHead)?.walker ?? null

    boundsBehavior: Flickable.StopAtBounds
    cacheBuffer: Theme.rowHeight * 4
    clip: true
    currentIndex: -1
    model: item.files
    objectName: "itemList"
    reuseItems: true
    section.property: "group"

    // A head that grows would push its own top out of sight.
    onContentHeightChanged: if (untouched)
        positionViewAtBeginning()
    onMovementStarted: untouched = false

    T.ScrollBar.vertical: ScrollBar {
        onPressedChanged: list.untouched = false
    }

    Connections {
        function onShownChanged() {
            list.untouched = true;
            if (list.walker)
                list.walker.index = 0;
        }

        target: list.item
    }
    FocusFollow {
        view: list
        onFollowed: list.untouched = list.untouched && list.atYBeginning
    }

    // qmllint disable unqualified
    delegate: ItemFileRow {
        current: list.walker?.activeFocus && list.walker.index === index ? list.walker.columnIn(columns) : -1
        width: ListView.view?.width ?? 0
        onPlayPressed: list.item.play(index)
        onSavePressed: list.item.save(index)
    }
    footer: ItemFooter {
        model: list.item
        width: list.width
    }
    header: ItemListHead {
        model: list.item
        view: list
        onWalked: list.untouched = false
    }
    // A heading that is used again is told its new `section` only so, and not as a required property.
    section.delegate: Label {
        font.pixelSize: Theme.fontHeading
        font.weight: Font.Medium
        height: section === "" ? 0 : Theme.rowHeight
        objectName: "groupHeading"
        text: section
        visible: section !== ""
        width: list.width
    }
    // qmllint enable unqualified
}
