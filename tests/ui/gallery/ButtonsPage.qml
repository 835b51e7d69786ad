pragma ComponentBehavior: Bound
import QtQuick
import Vellum.Controls
import Vellum.Theme

// Everything to press.
Column {
    id: page

    property alias menu: menu

    signal alertWanted
    signal sheetWanted

    spacing: Theme.spaceL

    Label {
        font.pixelSize: Theme.fontTitle
        font.weight: Font.Medium
        text: "Buttons"
    }
    Row {
        spacing: Theme.spaceS

        Button {
            property int presses: 0

            objectName: "plain"
            text: "Plain"
            onClicked: ++presses
        }
        Button {
            icon.name: "play"
            objectName: "prominent"
            prominent: true
            text: "Play"
            onClicked: page.alertWanted()
        }
        Button {
            destructive: true
            icon.name: "trash"
            objectName: "destructive"
            text: "Remove"
            onClicked: page.sheetWanted()
        }
        Button {
            destructive: true
            prominent: true
            text: "Clear All"
        }
    }
    Row {
        spacing: Theme.spaceS

        Button {
            enabled: false
            objectName: "disabled"
            text: "Plain"
        }
        Button {
            enabled: false
            icon.name: "play"
            prominent: true
            text: "Play"
        }
        Button {
            enabled: false
            icon.name: "trash"
            text: "Remove"
        }
        Button {
            objectName: "cut"
            text: "A text that is longer than its button"
            width: Theme.posterWidth
        }
    }
    Row {
        spacing: Theme.spaceS

        Repeater {
            model: ["back10", "pause", "forward10", "volume", "captions", "fullscreen"]

            delegate: IconButton {
                required property string modelData

                icon.name: modelData
                objectName: "icon-" + modelData
                text: "Do " + modelData
            }
        }
        IconButton {
            anchors.verticalCenter: parent.verticalCenter
            icon.name: "close"
            size: Theme.iconL
            text: "Close"
        }
        IconButton {
            enabled: false
            icon.name: "stop"
            text: "Stop"
        }
        IconButton {
            checkable: true
            checked: true
            icon.name: "grid"
            text: "Grid"
        }
    }
    Row {
        spacing: Theme.spaceS

        Button {
            down: true
            text: "Pressed"
        }
        Button {
            down: true
            prominent: true
            text: "Pressed"
        }
        Chip {
            anchors.verticalCenter: parent.verticalCenter
            down: true
            text: "Pressed"
        }
        IconButton {
            down: true
            icon.name: "refresh"
            text: "Pressed"
        }
    }
    Row {
        spacing: Theme.spaceS

        Chip {
            text: "Nosferatu"
        }
        Chip {
            checkable: true
            checked: true
            objectName: "chip"
            text: "Feature Films"
        }
        Chip {
            icon.name: "search"
            text: "Metropolis"
        }
        Chip {
            enabled: false
            text: "Disabled"
        }
        Chip {
            text: "נוספרטו"
        }
    }
    Row {
        spacing: Theme.spaceS

        Button {
            icon.name: "more"
            objectName: "menuButton"
            text: "Menu"
            onClicked: menu.popup(this, 0, height)

            Menu {
                id: menu

                property string last

                objectName: "menu"

                MenuItem {
                    icon.name: "magnet"
                    text: "Inspect Magnet"
                    onTriggered: menu.last = text
                }
                MenuItem {
                    icon.name: "copy"
                    text: "Copy Magnet Link"
                    onTriggered: menu.last = text
                }
                MenuItem {
                    enabled: false
                    icon.name: "external"
                    text: "Open Source Page"
                }
                MenuSeparator {}
                MenuItem {
                    destructive: true
                    icon.name: "trash"
                    text: "Remove"
                    onTriggered: menu.last = text
                }
            }
        }
        Picker {
            choices: [{ text: "Any", value: "Any" }, { text: "1080p", value: "1080p" }, { text: "720p", value: "720p" }]
            label: "Resolution"
            objectName: "picker"
            value: "Any"
            onPicked: choice => value = choice
        }
        Picker {
            choices: [{ text: "1 GB", value: 1 }]
            enabled: false
            label: "Max size"
            value: 1
        }
    }
}
