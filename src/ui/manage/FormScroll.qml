import QtQuick
import QtQuick.Templates as T
import Vellum.Controls
import Vellum.Theme

// The sections of a form under each other, scrolling; what the keyboard reaches comes into sight.
// Wider than its column by a margin, for the rings around what has the focus.
Flickable {
    id: scroll

    default property alias content: column.data
    readonly property Item focused: Window.activeFocusItem

    anchors.bottom: parent?.bottom
    anchors.left: parent?.left
    anchors.leftMargin: -Theme.spaceM
    anchors.right: parent?.right
    anchors.rightMargin: -Theme.spaceM
    anchors.top: parent?.top
    boundsBehavior: Flickable.StopAtBounds
    clip: true
    contentHeight: column.implicitHeight + Theme.spaceXL
    onFocusedChanged: {
        let inside = focused;
        while (inside && inside !== column)
            inside = inside.parent;
        if (!inside)
            return;
        const top = focused.mapToItem(column, 0, 0).y - Theme.spaceM;
        const bottom = top + focused.height + 2 * Theme.spaceM;
        contentY = Math.max(0, Math.min(Math.max(contentY, bottom - height), top));
    }

    T.ScrollBar.vertical: ScrollBar {}

    Column {
        id: column

        spacing: Theme.spaceXL
        width: scroll.width - 2 * Theme.spaceM
        x: Theme.spaceM
    }
}
