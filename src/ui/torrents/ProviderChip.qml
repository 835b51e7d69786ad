import QtQuick
import Vellum.Controls
import Vellum.Theme

// How far one provider is: `progress` is "pending", "ok" or "failed".
Rectangle {
    id: chip

    property string progress
    property alias text: words.text

    color: Theme.panel
    height: Theme.chipHeight
    implicitWidth: words.x + Math.ceil(words.implicitWidth) + Theme.spaceM
    radius: height / 2

    Spinner {
        anchors.verticalCenter: parent.verticalCenter
        running: chip.progress === "pending"
        size: Theme.iconS
        visible: running
        x: Theme.spaceS
        Accessible.ignored: true
    }
    Icon {
        anchors.verticalCenter: parent.verticalCenter
        color: chip.progress === "ok" ? Theme.good : Theme.bad
        name: chip.progress === "ok" ? "ok" : "error"
        size: Theme.iconS
        visible: chip.progress !== "pending"
        x: Theme.spaceS
    }
    Label {
        id: words

        anchors.verticalCenter: parent.verticalCenter
        color: Theme.textMuted
        font.pixelSize: Theme.fontSmall
        width: parent.width - x - Theme.spaceS
        x: Theme.spaceS + Theme.iconS + Theme.spaceXS
    }
}
