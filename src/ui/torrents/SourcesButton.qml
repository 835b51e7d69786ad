pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Templates as T
import Vellum.Controls
import Vellum.Theme
import Vellum.Torrents

// Which sources the table shows: a menu with a mark for each, made when it opens.
Button {
    id: button

    required property TorrentSearchModel model

    readonly property var hidden: model.hiddenSources
    readonly property color shade: hidden.length > 0 ? Theme.accent : Theme.text

    enabled: model.table.allSources.length > 0
    font.weight: Font.Normal
    text: qsTr("Sources")
    Accessible.role: Accessible.ButtonDropDown
    onClicked: {
        menu.sources = model.table.allSources;
        menu.popup(button, 0, height + Theme.spaceXS);
    }

    contentItem: Item {
        implicitHeight: words.implicitHeight
        implicitWidth: words.implicitWidth + Theme.spaceS + arrow.width

        Label {
            id: words

            anchors.verticalCenter: parent.verticalCenter
            color: button.shade
            font: button.font
            text: button.text
            Accessible.ignored: true
        }
        Icon {
            id: arrow

            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            color: Theme.textMuted
            name: "chevron-down"
            size: Theme.iconS
        }
    }

    Menu {
        id: menu

        property list<string> sources

        objectName: "sourcesMenu"

        Instantiator {
            model: menu.sources

            delegate: MenuItem {
                required property string modelData

                checkable: true
                checked: !button.hidden.includes(modelData)
                text: modelData
                onTriggered: button.model.showSource(modelData, checked)
            }

            onObjectAdded: (index, object) => menu.insertItem(index, object as T.MenuItem)
            onObjectRemoved: (index, object) => menu.removeItem(object as T.MenuItem)
        }
    }
}
