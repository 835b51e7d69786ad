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
    onClicked: menu.open()

    Menu {
        id: menu

        property int reason: Qt.OtherFocusReason

        objectName: opener.objectName + "Menu"
        x: opener.width - width
        y: -height - Theme.spaceXS
        // Not before: while it grows to its height its entries pass under the pointer.
        onOpened: currentIndex = opener.current
        // The focus goes back to where it came from.
        onAboutToShow: reason = opener.focusReason
        onClosed: {
            if (opener.visible)
                opener.forceActiveFocus(reason);
        }
    }
    Instantiator {
        // Only their number: a choice that changes their texts must not replace the one pressed.
        model: opener.entries.length

        delegate: MenuItem {
            required property int index

            text: opener.entries[index] ?? ""
            onTriggered: opener.chosen(index)
        }

        onObjectAdded: (index, object) => menu.insertItem(index, object as T.MenuItem)
        onObjectRemoved: (index, object) => menu.removeItem(object as T.MenuItem)
    }
}
