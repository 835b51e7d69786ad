import QtQuick
import Vellum.Controls
import Vellum.Theme

// A warning about what is typed above it.
Item {
    id: remark

    property alias text: words.text

    implicitHeight: Math.max(drawing.height, words.implicitHeight)
    width: parent?.width ?? 0

    Icon {
        id: drawing

        color: Theme.warn
        name: "warning"
        size: Theme.iconS
    }
    Label {
        id: words

        anchors.left: drawing.right
        anchors.leftMargin: Theme.spaceS
        anchors.right: parent.right
        color: Theme.warn
        font.pixelSize: Theme.fontSmall
        wrapMode: Text.Wrap
    }
}
