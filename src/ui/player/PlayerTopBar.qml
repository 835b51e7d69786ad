import QtQuick
import Vellum.Controls
import Vellum.Player
import Vellum.Theme

// The way back, and what plays.
Item {
    id: bar

    required property PlayerModel model
    property int rightInset: 0 // what stands in the corner there

    implicitHeight: back.height + 2 * Theme.spaceL

    Button {
        id: back

        anchors.left: parent.left
        anchors.leftMargin: Theme.spaceL
        anchors.verticalCenter: parent.verticalCenter
        icon.name: "chevron-left"
        objectName: "backButton"
        text: qsTr("Back")
        onClicked: bar.model.goBack()
    }
    Label {
        anchors.left: back.right
        anchors.leftMargin: Theme.spaceM
        anchors.right: parent.right
        anchors.rightMargin: Theme.spaceL + bar.rightInset
        anchors.verticalCenter: parent.verticalCenter
        font.pixelSize: Theme.fontHeading
        font.weight: Font.Medium
        horizontalAlignment: Text.AlignLeft
        objectName: "playerTitle"
        text: bar.model.stream.title
    }
}
