import QtQuick
import Vellum.Controls
import Vellum.Manage
import Vellum.Theme

// A provider of the user's own.
Sheet {
    id: sheet

    required property AddProviderModel model

    function add() {
        if (model.add())
            close();
    }

    title: qsTr("Add Provider")
    onAboutToShow: model.reset()
    onOpened: nameField.field.forceActiveFocus(Qt.TabFocusReason)

    LabeledField {
        id: nameField

        field.onAccepted: sheet.add()
        label: qsTr("Name")
        objectName: "addName"
        text: sheet.model.name
        onTextChanged: sheet.model.name = text
    }
    Picker {
        choices: sheet.model.kinds
        label: qsTr("Type")
        objectName: "addKind"
        value: sheet.model.kind
        onPicked: value => sheet.model.kind = value
    }
    LabeledField {
        field.onAccepted: sheet.add()
        label: qsTr("Base URL (e.g. http://localhost:9117/api/v2.0/indexers/all/results/torznab/api)")
        objectName: "addUrl"
        text: sheet.model.url
        onTextChanged: sheet.model.url = text
    }
    LabeledField {
        field.onAccepted: sheet.add()
        label: qsTr("API key (optional)")
        objectName: "addKey"
        text: sheet.model.key
        visible: sheet.model.takesKey
        onTextChanged: sheet.model.key = text
    }
    Item {
        height: Theme.spaceXS
        width: parent?.width ?? 0
    }
    Row {
        anchors.right: parent?.right
        spacing: Theme.spaceS

        Button {
            objectName: "cancelButton"
            text: qsTr("Cancel")
            onClicked: sheet.close()
        }
        Button {
            enabled: sheet.model.valid
            objectName: "addButton"
            prominent: true
            text: qsTr("Add")
            onClicked: sheet.add()
        }
    }
}
