pragma ComponentBehavior: Bound
import QtQuick
import Vellum.Controls
import Vellum.Manage
import Vellum.Theme

// What is typed about a provider, what is wrong with it, and what its addresses answer.
Item {
    id: editor

    required property ProviderRowModel row

    implicitHeight: column.implicitHeight + Theme.spaceL

    Column {
        id: column

        anchors.left: parent.left
        anchors.leftMargin: Theme.spaceL + Theme.toggleWidth + Theme.spaceM
        anchors.right: parent.right
        anchors.rightMargin: Theme.spaceM
        spacing: Theme.spaceM

        LabeledField {
            label: qsTr("Base URL (https://…)")
            objectName: "baseField"
            text: editor.row?.base ?? ""
            onTextChanged: if (editor.row)
                editor.row.base = text
        }
        EditorRemark {
            objectName: "baseInvalid"
            text: qsTr("Enter a full http:// or https:// address with a host.")
            visible: !(editor.row?.baseValid ?? true)
        }
        EditorRemark {
            objectName: "basePlain"
            text: qsTr("Plain http is less private and may be blocked by macOS. Prefer https.")
            visible: editor.row?.basePlain ?? false
        }
        Column {
            spacing: Theme.spaceXS
            width: parent.width

            Label {
                id: mirrorsLabel

                color: Theme.textMuted
                font.pixelSize: Theme.fontSmall
                text: qsTr("Mirrors (one per line, tried in order if the address above fails)")
                width: parent.width
                Accessible.ignored: true
            }
            TextEditor {
                name: mirrorsLabel.text
                objectName: "mirrorsEditor"
                text: editor.row?.mirrorsText ?? ""
                width: parent.width
                onTextChanged: if (editor.row)
                    editor.row.mirrorsText = text
            }
        }
        EditorRemark {
            objectName: "mirrorsIgnored"
            text: qsTr("Ignored (not valid http(s) addresses): %1").arg(editor.row?.invalidMirrors.join(", ") ?? "")
            visible: (editor.row?.invalidMirrors.length ?? 0) > 0
        }
        LabeledField {
            label: qsTr("API key (optional)")
            objectName: "keyField"
            text: editor.row?.apiKey ?? ""
            visible: editor.row?.takesKey ?? false
            onTextChanged: if (editor.row)
                editor.row.apiKey = text
        }
        Item {
            height: testButton.height
            width: parent.width

            Button {
                id: testButton

                icon.name: "bolt"
                objectName: "testButton"
                text: qsTr("Test Connection")
                onClicked: editor.row.test()
            }
            Spinner {
                anchors.left: testButton.right
                anchors.leftMargin: Theme.spaceM
                anchors.verticalCenter: parent.verticalCenter
                objectName: "testing"
                running: visible
                visible: editor.row?.testing ?? false
            }
            Label {
                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter
                color: Theme.textMuted
                font.pixelSize: Theme.fontSmall
                objectName: "lastWorking"
                text: qsTr("Last working: %1").arg(editor.row?.lastWorkingHost ?? "")
                visible: (editor.row?.lastWorkingHost ?? "") !== ""
                width: Math.min(Math.ceil(implicitWidth), parent.width - testButton.width - 2 * Theme.spaceHuge)
            }
        }
        Repeater {
            model: editor.row?.results ?? []

            delegate: ProviderResult {}
        }
    }
}
