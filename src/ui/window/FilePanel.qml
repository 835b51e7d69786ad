import QtQuick
import QtQuick.Dialogs

// Asks for a file on this machine, in the way of the desktop; made when it is first wanted.
// (Not bound: the Loader of Qt 6.4 refuses components that are.)
Item {
    id: panel

    property var filters: []
    property string title

    signal chosen(url file)

    function choose() {
        loader.active = true;
        (loader.item as FileDialog).open();
    }

    Loader {
        id: loader

        active: false
        sourceComponent: dialog
    }
    // qmllint disable unqualified
    Component {
        id: dialog

        FileDialog {
            nameFilters: panel.filters
            title: panel.title
            onAccepted: panel.chosen(selectedFile)
        }
    }
    // qmllint enable unqualified
}
