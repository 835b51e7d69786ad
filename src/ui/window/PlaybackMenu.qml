pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Templates as T
import Vellum.Controls
import Vellum.Window

// The commands of playback: their keys, and the menu that lists them.
Item {
    id: commands

    required property WindowModel model
    readonly property real skip: 10 // seconds
    readonly property real volumeStep: 0.1
    readonly property var list: [
        { title: qsTr("Play / Pause"), keys: "Ctrl+P", act: () => model.toggle() },
        { title: qsTr("Skip Back 10s"), keys: "Ctrl+Left", repeats: true, act: () => model.skip(-skip) },
        { title: qsTr("Skip Forward 10s"), keys: "Ctrl+Right", repeats: true, act: () => model.skip(skip) },
        { title: qsTr("Volume Up"), keys: "Ctrl+Up", repeats: true, act: () => model.changeVolume(volumeStep) },
        { title: qsTr("Volume Down"), keys: "Ctrl+Down", repeats: true, act: () => model.changeVolume(-volumeStep) },
        { title: qsTr("Mute"), keys: "Ctrl+Shift+M", act: () => model.toggleMuted() },
        { title: qsTr("Full Screen"), keys: "Ctrl+Meta+F", act: () => fullScreenWanted() },
        { title: qsTr("Stop"), keys: "Ctrl+.", act: () => model.stop() }
    ]

    signal fullScreenWanted

    function popupHere() {
        menu.popup();
    }
    function popup(item: Item) {
        menu.popup(item, 0, item.height);
    }

    Instantiator {
        model: commands.list

        delegate: Shortcut {
            required property var modelData

            autoRepeat: modelData.repeats ?? false
            context: Qt.ApplicationShortcut // over sheets and alerts too
            sequence: modelData.keys
            onActivated: modelData.act()
        }
    }
    // Where the key of the other systems is not on the keyboard, or taken by the desktop.
    Shortcut {
        autoRepeat: false
        context: Qt.ApplicationShortcut
        sequence: "F11"
        onActivated: commands.fullScreenWanted()
    }
    Menu {
        id: menu

        objectName: "playbackMenu"

        Instantiator {
            model: commands.list

            delegate: MenuItem {
                required property int index
                required property var modelData

                keys: names.of(modelData.keys)
                text: modelData.title
                onTriggered: modelData.act()
            }

            onObjectAdded: (index, object) => {
                if (index === commands.list.length - 1)
                    menu.addItem(separator.createObject(menu.contentItem) as Item);
                menu.addItem(object as T.MenuItem);
            }
        }
    }
    Component {
        id: separator

        MenuSeparator {}
    }
    QtObject {
        id: names

        function of(keys: string): string {
            return Qt.platform.os === "osx" ? keys.replace("Ctrl", "⌘").replace("Meta", "⌃").replace("Shift", "⇧").replace(/\+/g, "")
                                            : keys.replace("Meta", qsTr("Super"));
        }
    }
}
