pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Templates as T
import Vellum.Catalog
import Vellum.Controls
import Vellum.Theme

// Films as rows. One stop of the Tab key: arrows walk, Return opens.
ListView {
    id: view

    required property MediaList list
    readonly property int page: Math.max(1, Math.floor(height / Theme.rowHeight / 2))

    function walk(to: int) {
        currentIndex = Math.max(0, Math.min(to, count - 1));
    }

    activeFocusOnTab: true
    boundsBehavior: Flickable.StopAtBounds
    clip: true
    highlightMoveDuration: Theme.motion
    highlightMoveVelocity: -1
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

    delegate: PosterRow {
        id: row

        required property int index
        required property url poster
        required property string title

        // `subtitle` is the row's own.
        required subtitle
        current: ListView.isCurrentItem && view.activeFocus
        focusPolicy: Qt.NoFocus
        objectName: "row" + index
        source: poster
        text: title
        width: view.width
        onClicked: {
            view.currentIndex = row.index;
            view.list.open(row.index);
        }
    }
}
