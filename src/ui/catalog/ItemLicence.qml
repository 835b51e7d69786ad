import QtQuick
import Vellum.Catalog
import Vellum.Controls
import Vellum.Theme

// What the catalog says about the licence of an item.
Item {
    id: line

    required property ItemModel model
    readonly property bool known: model.licence !== ""

    implicitHeight: known ? Math.max(seal.height, address.height) : none.implicitHeight

    Icon {
        id: seal

        color: Theme.good
        name: "verified"
        visible: line.known
    }
    Label {
        id: word

        color: Theme.textMuted
        height: seal.height
        text: qsTr("License:")
        visible: line.known
        x: seal.width + Theme.spaceS
    }
    Link {
        id: address

        height: seal.height
        objectName: "licenceLink"
        text: line.model.licence
        visible: line.known && line.model.licenceIsLink
        width: Math.min(implicitWidth, line.width - x)
        x: word.x + word.width + Theme.spaceXS
        onClicked: line.model.openLicence()
    }
    Label {
        height: seal.height
        objectName: "licenceText"
        text: line.model.licence
        visible: line.known && !line.model.licenceIsLink
        width: line.width - x
        x: address.x
    }
    NoteLine {
        id: none

        icon: "info"
        objectName: "noLicence"
        text: qsTr("No license information provided by the catalog. Don't assume this item is public domain.")
        visible: !line.known
        width: parent.width
    }
}
