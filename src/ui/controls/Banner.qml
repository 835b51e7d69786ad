import QtQuick
import Vellum.Theme

// A sentence that the user should see, on its colour: `kind` is "info", "warn" or "bad". With an
// `action` it has one button at its end. Two lines at most; the rest is in the tooltip.
Rectangle {
    id: banner

    property string action
    property string kind: "warn"
    property string text
    readonly property color ink: kind === "bad" ? Theme.bad : kind === "warn" ? Theme.warn : Theme.textMuted

    signal triggered

    color: Theme.tint(ink)
    implicitHeight: Math.max(Theme.rowHeight, words.implicitHeight + 2 * Theme.spaceM)
    implicitWidth: Theme.sheetWidth
    radius: Theme.radiusM
    Accessible.name: text
    Accessible.role: Accessible.AlertMessage

    Icon {
        id: drawing

        anchors.left: parent.left
        anchors.leftMargin: Theme.spaceM
        anchors.verticalCenter: parent.verticalCenter
        color: banner.ink
        name: banner.kind === "bad" ? "error" : banner.kind === "warn" ? "warning" : "info"
    }
    Label {
        id: words

        anchors.left: drawing.right
        anchors.leftMargin: Theme.spaceM
        anchors.right: button.visible ? button.left : parent.right
        anchors.rightMargin: Theme.spaceM
        anchors.verticalCenter: parent.verticalCenter
        maximumLineCount: 2
        text: banner.text
        wrapMode: Text.Wrap
        Accessible.ignored: true
    }
    Button {
        id: button

        anchors.right: parent.right
        anchors.rightMargin: (Theme.rowHeight - height) / 2
        anchors.verticalCenter: parent.verticalCenter
        text: banner.action
        visible: text !== ""
        onClicked: banner.triggered()
    }
}
