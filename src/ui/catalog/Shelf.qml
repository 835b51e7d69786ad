pragma ComponentBehavior: Bound
import QtQuick
import Vellum.Catalog
import Vellum.Controls
import Vellum.Theme

// A title and a row of posters that scrolls sideways. One stop of the Tab key: arrows walk, Return
// opens. While `loading` it has the same size.
Item {
    id: shelf

    required property MediaList list
    property bool loading: false
    property string title
    readonly property bool walking: view.activeFocus

    function scroll(by: int) {
        const most = Math.max(0, view.contentWidth - view.width);
        move.to = view.originX + Math.max(0, Math.min(view.contentX - view.originX + by * view.width, most));
        move.restart();
    }

    implicitHeight: head.height + view.height
    visible: loading || list.count > 0
    Accessible.name: title
    Accessible.role: Accessible.Grouping

    Item {
        id: head

        height: Theme.rowHeight
        width: parent.width

        Label {
            anchors.left: parent.left
            anchors.right: buttons.left
            color: shelf.loading ? Theme.textMuted : Theme.text
            font.pixelSize: Theme.fontHeading
            font.weight: Font.Medium
            height: parent.height
            leftPadding: Theme.spaceS
            objectName: "shelfTitle"
            text: shelf.title
        }
        Row {
            id: buttons

            anchors.right: parent.right
            anchors.rightMargin: Theme.spaceL
            anchors.verticalCenter: parent.verticalCenter
            visible: view.visible && view.contentWidth > view.width

            // The keyboard walks the shelf itself.
            IconButton {
                enabled: !view.atXBeginning
                focusPolicy: Qt.NoFocus
                icon.name: "chevron-left"
                opacity: enabled ? 1 : Theme.disabledStrength
                text: qsTr("Back")
                onClicked: shelf.scroll(-1)
            }
            IconButton {
                enabled: !view.atXEnd
                focusPolicy: Qt.NoFocus
                icon.name: "chevron-right"
                opacity: enabled ? 1 : Theme.disabledStrength
                text: qsTr("Forward")
                onClicked: shelf.scroll(1)
            }
        }
    }
    ListView {
        id: view

        activeFocusOnTab: true
        anchors.top: head.bottom
        boundsBehavior: Flickable.StopAtBounds
        cacheBuffer: Theme.posterWidth
        clip: true
        height: Math.round(Theme.posterWidth * Theme.posterShape) + 2 * Theme.spaceS + Theme.shelfTexts
        highlightMoveDuration: Theme.motion
        highlightMoveVelocity: -1
        model: shelf.list
        objectName: "shelfRow"
        orientation: ListView.Horizontal
        reuseItems: true
        rightMargin: Theme.spaceS
        visible: !shelf.loading
        width: parent.width
        Accessible.name: shelf.title
        Accessible.role: Accessible.List
        Keys.onEnterPressed: shelf.list.open(currentIndex)
        Keys.onReturnPressed: shelf.list.open(currentIndex)
        Keys.onSpacePressed: shelf.list.open(currentIndex)
        onActiveFocusChanged: if (activeFocus && currentIndex < 0)
            currentIndex = 0

        delegate: Item {
            id: cell

            required property int index
            required property url poster
            required property real progress
            required property string subtitle
            required property string title

            height: view.height
            width: Theme.posterWidth + 2 * Theme.spaceS

            PosterCard {
                current: cell.ListView.isCurrentItem && view.activeFocus
                focusPolicy: Qt.NoFocus
                objectName: "card" + cell.index
                progress: cell.progress
                source: cell.poster
                subtitle: cell.subtitle
                text: cell.title
                x: Theme.spaceS
                y: Theme.spaceS
                onClicked: {
                    view.currentIndex = cell.index;
                    shelf.list.open(cell.index);
                }
            }
        }

        NumberAnimation {
            id: move

            duration: Theme.motionSlow
            easing.type: Theme.easing
            property: "contentX"
            target: view
        }
    }
    Row {
        anchors.top: head.bottom
        clip: true
        height: view.height
        leftPadding: Theme.spaceS
        spacing: 2 * Theme.spaceS
        topPadding: Theme.spaceS
        visible: shelf.loading
        width: parent.width

        Repeater {
            model: shelf.loading ? Math.max(0, Math.ceil(shelf.width / Theme.posterWidth)) : 0

            delegate: PosterCard {
                loading: true
            }
        }
    }
}
