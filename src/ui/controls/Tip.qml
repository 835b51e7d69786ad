import QtQuick

// Makes a tooltip for its parent when it is wanted, and only then: a table has hundreds of these.
// (Not bound: the Loader of Qt 6.4 refuses components that are.)
Loader {
    id: tip

    property bool shown: false
    property string text

    active: shown && text !== ""

    // qmllint disable unqualified
    sourceComponent: Tooltip {
        parent: tip.parent
        text: tip.text
        visible: true
    }
    // qmllint enable unqualified
}
