import QtQuick
import Vellum.Controls
import Vellum.Theme

// What is being said, at the foot of the picture.
Item {
    id: overlay

    property string text

    Rectangle {
        anchors.bottom: parent.bottom
        anchors.horizontalCenter: parent.horizontalCenter
        color: Theme.captionShade
        height: words.height + 2 * Theme.spaceXS
        radius: Theme.radiusS
        visible: overlay.text !== ""
        width: words.width + 2 * Theme.spaceM

        Label {
            id: words

            anchors.centerIn: parent
            color: Theme.caption
            font.pixelSize: Theme.fontTitle
            font.weight: Font.Medium
            height: Math.min(implicitHeight, overlay.height / 2)
            horizontalAlignment: Text.AlignHCenter
            objectName: "subtitleText"
            text: overlay.text
            width: Math.min(Math.ceil(implicitWidth), overlay.width - 2 * (Theme.spaceHuge + Theme.spaceM))
            wrapMode: Text.Wrap
        }
    }
}
