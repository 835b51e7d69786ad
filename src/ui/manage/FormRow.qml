import QtQuick
import Vellum.Controls
import Vellum.Theme

// One row of a form: its text, and at the right what it sets.
Item {
    id: row

    default property alias controls: slot.data
    property alias text: words.text

    implicitHeight: Math.max(Theme.rowHeight, slot.height + 2 * Theme.spaceXS)
    width: parent?.width ?? 0

    RowLine {}
    Label {
        id: words

        anchors.left: parent.left
        anchors.leftMargin: Theme.spaceL
        anchors.right: slot.left
        anchors.rightMargin: slot.width > 0 ? Theme.spaceM : 0
        anchors.verticalCenter: parent.verticalCenter
    }
    Row {
        id: slot

        anchors.right: parent.right
        anchors.rightMargin: Theme.spaceM
        anchors.verticalCenter: parent.verticalCenter
        spacing: Theme.spaceS
    }
}
