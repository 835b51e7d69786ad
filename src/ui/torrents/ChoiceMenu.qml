pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Templates as T
import Vellum.Controls

// A menu made of a list when it opens: `choices` is a list of { id, text }.
Menu {
    id: menu

    property string key
    property list<var> choices

    signal chosen(string key, string id)

    // For the row with that key, below the item or at a place in it.
    function open(rowKey: string, list: var, at: Item, x: real, y: real) {
        choices = list;
        key = rowKey;
        if (choices.length > 0)
            popup(at, x, y);
    }

    Instantiator {
        model: menu.choices

        delegate: MenuItem {
            required property var modelData

            text: modelData.text
            onTriggered: menu.chosen(menu.key, modelData.id)
        }

        onObjectAdded: (index, object) => menu.insertItem(index, object as T.MenuItem)
        onObjectRemoved: (index, object) => menu.removeItem(object as T.MenuItem)
    }
}
