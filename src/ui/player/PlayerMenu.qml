pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Templates as T
import Vellum.Controls
import Vellum.Theme

// A drawing that opens a menu above itself. `chosen` tells the place of the entry; children stand
// below the entries.
IconButton {
    id: opener

    property int current: -1
    required property var entries
    readonly property alias isOpen: menu.visible
    default property alias more: menu.contentData

    signal chosen(int index)

    focusPolicy: Qt.StrongFocus
    hoverEnabled: !isOpen
    Accessible.role: Accessible.ButtonMenu
    onClicked: {
        // Its height decides where it opens: above the button, not on it.
        (menu.contentItem as ListView)?.forceLayout();
        menu.open();
        menu.currentIndex = current;
    }

    Menu {
        id: menu

        objectName: opener.objectName + "Menu"
        x: opener.width - width
        y: -height - Theme.spaceXS
    }
    Instantiator {
        model: opener.entries

        delegate: MenuItem {
            required property int index
            required property string modelData

            text: modelData
            onTriggered: opener.chosen(index)
        }

        onObjectAdded: (index, object) => menu.insertItem(index, object as T.MenuItem)
        onObjectRemoved: (index, object) => menu.removeItem(object as T.MenuItem)
    }
}
