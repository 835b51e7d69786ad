import QtQuick

// The one stop of the Tab key for all rows of `view`, which makes only those in sight, in an order of
// its own. Arrows walk the rows and their columns, Return presses. A row has `columns`,
// `press(column)`, and `spoken` for a screen reader. Stands in the view's header: after what can be
// reached there, before its footer. (The view has no current item, for that takes the focus.)
Item {
    id: walker

    property int column: 0
    property int index: -1
    property string name
    property var row: null // of the index, when it was last walked to
    readonly property int step: Math.max(1, Math.floor(view.height / Math.max(1, height)) - 1)
    required property ListView view

    signal walked

    function columnIn(columns: int): int {
        return Math.min(column, columns - 1);
    }
    function press(event: var) {
        if (event.isAutoRepeat || view.count === 0)
            return;
        walk(index); // the view may have been scrolled
        row?.press(columnIn(row.columns));
    }
    function turn(by: int) {
        const columns = row?.columns ?? 1;
        column = Math.max(0, Math.min(columnIn(columns) + by, columns - 1));
    }
    function walk(to: int) {
        index = Math.max(0, Math.min(to, view.count - 1));
        view.forceLayout();
        view.positionViewAtIndex(index, ListView.Contain);
        row = view.itemAtIndex(index);
        walked();
    }

    activeFocusOnTab: view.count > 0
    // Over its row, where what follows the focus looks for it.
    height: row?.height ?? 0
    width: view.width
    y: row ? row.y - (parent?.y ?? 0) : 0
    Accessible.description: row?.spoken ?? ""
    Accessible.focusable: true
    Accessible.name: name
    Accessible.role: Accessible.List
    Keys.onDownPressed: walk(index + 1)
    Keys.onEnterPressed: event => press(event)
    Keys.onLeftPressed: turn(-1)
    Keys.onPressed: event => {
        const to = event.key === Qt.Key_Home ? 0 : event.key === Qt.Key_End ? view.count - 1
                 : event.key === Qt.Key_PageUp ? Math.max(0, index - step)
                 : event.key === Qt.Key_PageDown ? index + step : -1;
        event.accepted = to !== -1;
        if (event.accepted)
            walk(to);
    }
    Keys.onReturnPressed: event => press(event)
    Keys.onRightPressed: turn(1)
    Keys.onSpacePressed: event => press(event)
    Keys.onUpPressed: walk(index - 1)
    onActiveFocusChanged: if (activeFocus)
        walk(index)

    // The row after one that went.
    Connections {
        function onCountChanged() {
            if (walker.activeFocus)
                settled.restart();
        }

        target: walker.view
    }
    Timer {
        id: settled

        interval: 0
        onTriggered: walker.walk(walker.index)
    }
}
