import QtQuick
import Vellum.Controls
import Vellum.Theme

// The hair-line over every row of a section but the first.
Separator {
    anchors.left: parent?.left
    anchors.leftMargin: Theme.spaceL
    anchors.right: parent?.right
    anchors.top: parent?.top
    visible: (parent?.y ?? 0) > 0
}
