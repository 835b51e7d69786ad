import QtQuick
import QtQuick.Dialogs

// Asks for a folder on this machine, in the way of the desktop; made when it is first wanted.
// `which` tells what it is for. (Not bound: the Loader of Qt 6.4 refuses components that are.)
Item {
    id: panel

    property string which

    signal chosen(string which, url folder)

    function chooseFor(what: string) {
        which = what;
        loader.active = true;
        (loader.item as FolderDialog).open();
    }

    Loader {
        id: loader

        active: false
        sourceComponent: dialog
    }
    // qmllint disable unqualified
    Component {
        id: dialog

        FolderDialog {
            title: qsTr("Choose a folder")
            onAccepted: panel.chosen(panel.which, selectedFolder)
        }
    }
    // qmllint enable unqualified
}
