import QtQuick
import Vellum.Theme

// Where the next letter goes. It blinks for some seconds and then stands still: each blink draws the
// whole window anew.
Rectangle {
    id: cursor

    readonly property int mostChanges: 20 // even, so that it ends in sight
    property int changes: 0 // since it last moved
    required property int position
    required property bool shown

    color: Theme.text
    visible: shown && changes % 2 === 0
    width: Theme.hairlineWidth

    onPositionChanged: changes = 0
    onShownChanged: changes = 0

    Timer {
        interval: Application.styleHints.cursorFlashTime / 2
        repeat: true
        running: cursor.shown && interval > 0 && cursor.changes < cursor.mostChanges
        onTriggered: ++cursor.changes
    }
}
