import QtQuick
import Vellum.Theme

// What stands in the middle of the picture: its children under each other, centred. It takes the
// clicks that it covers.
Rectangle {
    id: card

    default property alias content: column.data
    property int contentWidth: Theme.sentenceWidth

    anchors.centerIn: parent
    border.color: Theme.hairline
    border.width: Theme.hairlineWidth
    color: Theme.panel
    height: column.height + 2 * Theme.spaceXL
    radius: Theme.radiusL
    width: contentWidth + 2 * Theme.spaceXL

    MouseArea {
        anchors.fill: parent
    }
    Column {
        id: column

        spacing: Theme.spaceL
        width: card.contentWidth
        x: Theme.spaceXL
        y: Theme.spaceXL
    }
}
