import QtQuick
import QtQuick.Templates as T
import Vellum.Controls
import Vellum.Theme

// A column of its children that is at most `highest` points high and scrolls beyond that; what the
// keyboard reaches in it comes into sight; arrows scroll it.
Flickable {
    id: box

    default property alias content: column.data
    property alias spacing: column.spacing
    property int highest: 0
    readonly property Item focused: Window.activeFocusItem
    readonly property bool scrolls: contentHeight > height

    activeFocusOnTab: scrolls
    boundsBehavior: Flickable.StopAtBounds
    clip: scrolls
    contentHeight: column.implicitHeight
    implicitHeight: Math.min(contentHeight, highest)
    Keys.onDownPressed: contentY = Math.min(contentHeight - height, contentY + Theme.rowHeight)
    Keys.onUpPressed: contentY = Math.max(0, contentY - Theme.rowHeight)
    onFocusedChanged: {
        let inside = focused;
        while (inside && inside !== column)
            inside = inside.parent;
        if (!inside)
            return;
        const top = focused.mapToItem(column, 0, 0).y;
        contentY = Math.max(0, Math.min(Math.max(contentY, top + focused.height - height), top));
    }

    T.ScrollBar.vertical: ScrollBar {}

    FocusRing {
        parent: box
        radius: Theme.radiusM
        shown: box.activeFocus
    }

    Column {
        id: column

        width: box.width
    }
}
