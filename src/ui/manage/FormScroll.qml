import QtQuick
import QtQuick.Templates as T
import Vellum.Controls
import Vellum.Theme

// The sections of a form under each other, scrolling; what the keyboard reaches comes into sight.
// Wider than its column by a margin, for the rings around what has the focus.
Flickable {
    id: scroll

    default property alias content: column.data

    anchors.bottom: parent?.bottom
    anchors.left: parent?.left
    anchors.leftMargin: -Theme.spaceM
    anchors.right: parent?.right
    anchors.rightMargin: -Theme.spaceM
    anchors.top: parent?.top
    boundsBehavior: Flickable.StopAtBounds
    clip: true
    contentHeight: column.implicitHeight + Theme.spaceXL

    T.ScrollBar.vertical: ScrollBar {}

    FocusFollow {
        view: scroll
    }
    Column {
        id: column

        spacing: Theme.spaceXL
        width: scroll.width - 2 * Theme.spaceM
        x: Theme.spaceM
    }
}
