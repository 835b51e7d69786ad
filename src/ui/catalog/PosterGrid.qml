pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Templates as T
import Vellum.Catalog
import Vellum.Controls
import Vellum.Theme

// Films as posters, as many in a row as fit. One stop of the Tab key: arrows walk, Return opens.
GridView {
    id: view

    required property MediaList list
    readonly property int columns: Math.max(1, Math.floor(width / (Theme.posterWidth + 2 * Theme.spaceS)))
    readonly property int page: columns * Math.max(1, Math.floor(height / cellHeight))
    readonly property int titleHeight: Math.ceil(2 * bodyText.lineSpacing + smallText.lineSpacing)

    function walk(to: int) {
        currentIndex = Math.max(0, Math.min(to, count - 1));
    }

    activeFocusOnTab: true
    boundsBehavior: Flickable.StopAtBounds
    cacheBuffer: cellHeight
    cellHeight: Math.round((cellWidth - 2 * Theme.spaceS) * Theme.posterShape) + titleHeight + 2 * Theme.spaceL
    cellWidth: Math.floor(width / columns)
    clip: true
    highlightMoveDuration: Theme.motion
    model: list
    reuseItems: true
    Accessible.name: qsTr("Films")
    Accessible.role: Accessible.List
    Keys.onEnterPressed: list.open(currentIndex)
    Keys.onPressed: event => {
        const to = event.key === Qt.Key_Home ? 0 : event.key === Qt.Key_End ? count - 1
                 : event.key === Qt.Key_PageUp ? currentIndex - page
                 : event.key === Qt.Key_PageDown ? currentIndex + page : -1;
        event.accepted = to !== -1 || event.key === Qt.Key_PageUp;
        if (event.accepted)
            walk(to);
    }
    Keys.onReturnPressed: list.open(currentIndex)
    Keys.onSpacePressed: list.open(currentIndex)

    onActiveFocusChanged: if (activeFocus)
        walk(currentIndex)

    T.ScrollBar.vertical: ScrollBar {}

    delegate: Item {
        id: cell

        required property int index
        required property url poster
        required property real progress
        required property string subtitle
        required property string title

        height: view.cellHeight
        width: view.cellWidth

        PosterCard {
            current: cell.GridView.isCurrentItem && view.activeFocus
            focusPolicy: Qt.NoFocus
            objectName: "card" + cell.index
            progress: cell.progress
            source: cell.poster
            subtitle: cell.subtitle
            text: cell.title
            width: parent.width - 2 * Theme.spaceS
            x: Theme.spaceS
            y: Theme.spaceS
            onClicked: {
                view.currentIndex = cell.index;
                view.list.open(cell.index);
            }
        }
    }

    FontMetrics {
        id: bodyText

        font.family: Theme.family
        font.pixelSize: Theme.fontBody
    }
    FontMetrics {
        id: smallText

        font.family: Theme.family
        font.pixelSize: Theme.fontSmall
    }
}
