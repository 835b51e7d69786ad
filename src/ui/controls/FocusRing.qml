import QtQuick
import Vellum.Theme

// Stands around its parent, with a gap, while the keyboard has put the focus there.
Rectangle {
    id: ring

    property bool shown: false

    anchors.fill: parent
    anchors.margins: -2 * border.width
    border.color: Theme.accent
    border.width: Theme.focusWidth
    color: Theme.clear
    radius: (parent as Rectangle)?.radius + 2 * border.width
    visible: shown
}
