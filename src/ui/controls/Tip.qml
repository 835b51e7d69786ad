pragma ComponentBehavior: Bound
import QtQuick

// Makes a tooltip for its parent when it is wanted, and only then: a table has hundreds of these.
Loader {
    id: tip

    property bool shown: false
    property string text

    active: shown && text !== ""
    sourceComponent: Tooltip {
        parent: tip.parent
        text: tip.text
        visible: true
    }
}
