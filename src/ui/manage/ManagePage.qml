import QtQuick
import Vellum.Controls
import Vellum.Theme

// The frame of a screen: its title with at most one action, and its content in a column below that
// is no wider than one reads.
FocusScope {
    id: page

    property string action
    property alias actionEnabled: button.enabled
    default property alias content: body.data
    property string title

    signal acted

    Accessible.name: title
    Accessible.role: Accessible.Pane

    Item {
        id: frame

        anchors.bottom: parent.bottom
        anchors.horizontalCenter: parent.horizontalCenter
        anchors.top: parent.top
        width: Math.min(parent.width - 2 * Theme.spaceL, Theme.formWidth)

        Label {
            id: heading

            anchors.left: parent.left
            anchors.right: button.visible ? button.left : parent.right
            anchors.rightMargin: Theme.spaceM
            anchors.top: parent.top
            anchors.topMargin: Theme.spaceL
            font.pixelSize: Theme.fontTitle
            font.weight: Font.DemiBold
            text: page.title
        }
        Button {
            id: button

            anchors.right: parent.right
            anchors.verticalCenter: heading.verticalCenter
            objectName: "pageAction"
            text: page.action
            visible: text !== ""
            onClicked: page.acted()
        }
        Item {
            id: body

            anchors.bottom: parent.bottom
            anchors.left: parent.left
            anchors.right: parent.right
            anchors.top: heading.bottom
            anchors.topMargin: Theme.spaceL
        }
    }
}
