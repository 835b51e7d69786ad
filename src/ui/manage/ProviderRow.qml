import QtQuick
import Vellum.Controls
import Vellum.Manage
import Vellum.Theme

// One provider: whether searches ask it, where it is, and, expanded, the editor of that.
Item {
    id: line

    required property ProviderRowModel row

    signal removalWanted

    implicitHeight: column.implicitHeight
    objectName: "providerRow"
    width: parent?.width ?? 0
    Accessible.name: row?.name ?? ""
    Accessible.role: Accessible.Grouping

    RowLine {}
    Column {
        id: column

        width: parent.width

        Item {
            height: Theme.rowHeight + Theme.spaceM
            width: parent.width

            Toggle {
                id: toggle

                anchors.left: parent.left
                anchors.leftMargin: Theme.spaceL
                anchors.verticalCenter: parent.verticalCenter
                checked: line.row?.enabled ?? false
                objectName: "enabledToggle"
                Accessible.name: line.row?.name ?? ""
                onToggled: line.row.enabled = checked
            }
            Column {
                anchors.left: toggle.right
                anchors.leftMargin: Theme.spaceM
                anchors.right: buttons.left
                anchors.rightMargin: Theme.spaceM
                anchors.verticalCenter: parent.verticalCenter
                spacing: Theme.spaceXS / 2

                Label {
                    objectName: "name"
                    text: line.row?.name ?? ""
                    width: parent.width
                }
                Label {
                    color: Theme.textMuted
                    font.pixelSize: Theme.fontSmall
                    objectName: "subtitle"
                    text: line.row?.subtitle ?? ""
                    width: parent.width
                }
            }
            Row {
                id: buttons

                anchors.right: parent.right
                anchors.rightMargin: Theme.spaceM
                anchors.verticalCenter: parent.verticalCenter
                spacing: Theme.spaceXS
                visible: line.row?.editable ?? false
                width: visible ? implicitWidth : 0

                Button {
                    objectName: "editButton"
                    text: line.row?.expanded ? qsTr("Done") : qsTr("Edit")
                    onClicked: line.row.expanded ? line.row.done() : line.row.edit()
                }
                IconButton {
                    color: Theme.textMuted
                    icon.name: "trash"
                    objectName: "trashButton"
                    text: qsTr("Remove %1").arg(line.row?.name ?? "")
                    onClicked: line.removalWanted()
                }
            }
        }
        ProviderEditor {
            row: line.row
            visible: line.row?.expanded ?? false
            width: parent.width
        }
    }
}
