import QtQuick
import QtQuick.Templates as T
import Vellum.Controls

// A column of its children that is at most `highest` points high and scrolls beyond that; what the
// keyboard reaches in it comes into sight.
Flickable {
    id: box

    default property alias content: column.data
    property alias spacing: column.spacing
    property int highest: 0
    readonly property Item focused: Window.activeFocusItem

    boundsBehavior: Flickable.StopAtBounds
    clip: contentHeight > height
    contentHeight: column.implicitHeight
    implicitHeight: Math.min(contentHeight, highest)
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

    Column {
        id: column

        width: box.width
    }
}
