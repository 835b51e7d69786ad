pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Templates as T
import Vellum.Controls
import Vellum.Theme
import Vellum.Torrents

// The results of a torrent search: arrows walk, Return plays, Shift and Ctrl pick several, the Menu
// key opens what else a row offers.
Item {
    id: table

    required property TorrentSearchModel model
    readonly property TorrentTable rows: model.table

    function kindOf(modifiers: int): int {
        return modifiers & Qt.ShiftModifier ? TorrentTable.PickExtend : modifiers & (Qt.ControlModifier | Qt.MetaModifier) ? TorrentTable.PickToggle : TorrentTable.PickOnly;
    }
    // Whoever closes a menu stands where he stood, unless something else has the keyboard now.
    function comeBack() {
        if (list.Window.activeFocusItem === list.Window.contentItem)
            list.forceActiveFocus();
    }
    function showActions(key: string, at: Item, x: real, y: real) {
        actionsMenu.open(key, model.actions(key), at, x, y);
    }
    function walk(steps: int, modifiers: int) {
        list.forceActiveFocus();
        rows.pick(rows.currentRow + steps, modifiers & Qt.ShiftModifier ? TorrentTable.PickExtend : TorrentTable.PickOnly);
        list.positionViewAtIndex(rows.currentRow, ListView.Contain);
    }

    TableColumns {
        id: tableColumns

        numberHead: header.numberWidth
        width: list.width
    }
    ResultHeader {
        id: header

        columns: tableColumns
        model: table.model
    }
    Separator {
        id: line

        anchors.top: header.bottom
        width: parent.width
    }
    ListView {
        id: list

        readonly property int page: Math.max(1, Math.floor(height / Theme.rowHeight) - 1)
        // The ring shows to whoever walks by keys, and goes when the mouse takes over.
        property bool walked: true

        activeFocusOnTab: true
        anchors.bottom: parent.bottom
        anchors.top: line.bottom
        boundsBehavior: Flickable.StopAtBounds
        clip: true
        highlightFollowsCurrentItem: false
        keyNavigationEnabled: false
        model: table.rows
        objectName: "resultList"
        reuseItems: true
        width: parent.width
        Accessible.name: qsTr("Results")
        Accessible.role: Accessible.Table
        Keys.onPressed: event => {
            const all = table.rows.total;
            const steps = {
                [Qt.Key_Up]: -1,
                [Qt.Key_Down]: 1,
                [Qt.Key_PageUp]: -page,
                [Qt.Key_PageDown]: page,
                [Qt.Key_Home]: -all,
                [Qt.Key_End]: all
            }[event.key] ?? 0;
            walked = true;
            event.accepted = true;
            if (steps !== 0)
                table.walk(steps, event.modifiers);
            else if (event.key === Qt.Key_Menu || event.key === Qt.Key_Return && event.modifiers & Qt.ControlModifier)
                (currentItem as ResultCells)?.askForActions();
            else if (event.key === Qt.Key_Return || event.key === Qt.Key_Enter)
                table.model.play(table.rows.currentKey);
            else if (event.matches(StandardKey.SelectAll))
                table.rows.pickAll();
            else
                event.accepted = false;
        }

        T.ScrollBar.vertical: ScrollBar {}

        delegate: ResultCells {
            id: row

            columns: tableColumns
            isCurrent: index === table.rows.currentRow
            ringed: isCurrent && list.activeFocus && list.walked
            width: list.width
            onActionsWanted: (at, x, y) => {
                picked(Qt.NoModifier);
                table.showActions(key, at, x, y);
            }
            onPicked: modifiers => {
                list.forceActiveFocus();
                list.walked = false;
                table.rows.pick(index, table.kindOf(modifiers));
            }
            onPlayed: table.model.play(key)
            onVariantsWanted: at => variantsMenu.open(key, table.model.variants(key), at, 0, at.height)
            ListView.onPooled: {
                // The focus must not go with a row that scrolls away.
                if (row.activeFocus)
                    list.forceActiveFocus();
            }
        }
    }
    // Before there is a row to stand on.
    FocusRing {
        anchors.fill: list
        shown: list.activeFocus && list.walked && table.rows.currentRow < 0
    }
    Binding {
        list.currentIndex: table.rows.currentRow
    }
    ChoiceMenu {
        id: actionsMenu

        objectName: "actionsMenu"
        onChosen: (key, id) => table.model.act(key, id)
        onClosed: table.comeBack()
    }
    ChoiceMenu {
        id: variantsMenu

        objectName: "variantsMenu"
        title: qsTr("Choose streaming quality")
        onChosen: (key, id) => table.model.playVariant(key, id)
        onClosed: table.comeBack()
    }
}
