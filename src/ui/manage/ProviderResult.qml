import QtQuick
import Vellum.Controls
import Vellum.Theme

// What one address of a provider answered to a test.
Item {
    id: line

    required property var modelData // {state, url, detail}

    implicitHeight: words.implicitHeight
    objectName: "result"
    width: parent?.width ?? 0

    Icon {
        id: drawing

        color: line.modelData.state === "failed" ? Theme.bad : line.modelData.state === "ok" ? Theme.good : Theme.warn
        name: line.modelData.state === "failed" ? "error" : line.modelData.state === "ok" ? "ok" : "warning"
        y: Theme.spaceXS / 2
    }
    Column {
        id: words

        anchors.left: drawing.right
        anchors.leftMargin: Theme.spaceS
        anchors.right: parent.right
        spacing: Theme.spaceXS / 2

        Label {
            text: line.modelData.url
            width: parent.width
        }
        Label {
            color: Theme.textMuted
            font.pixelSize: Theme.fontSmall
            text: line.modelData.detail
            width: parent.width
            wrapMode: Text.Wrap
        }
    }
}
