import QtQuick
import Vellum.Controls
import Vellum.Theme

// A row of a form with a folder to choose.
FormRow {
    id: row

    property alias path: where.text

    signal chosen

    Label {
        id: where

        anchors.verticalCenter: parent.verticalCenter
        color: Theme.textMuted
        elide: Text.ElideMiddle
        objectName: "path"
        width: Math.min(Math.ceil(implicitWidth), row.width / 2)
    }
    Button {
        objectName: "chooseButton"
        text: qsTr("Choose…")
        Accessible.name: qsTr("%1: choose").arg(row.text)
        onClicked: row.chosen()
    }
}
