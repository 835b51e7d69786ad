import QtQuick
import Vellum.Controls
import Vellum.Theme

// Everything to type into, to set, and to watch.
Column {
    spacing: Theme.spaceL

    Label {
        font.pixelSize: Theme.fontTitle
        font.weight: Font.Medium
        text: "Inputs"
    }
    Row {
        spacing: Theme.spaceM

        Field {
            property int submits: 0

            icon: "search"
            objectName: "field"
            placeholderText: "Search title or keywords across enabled providers…"
            onAccepted: ++submits
        }
        Field {
            objectName: "filled"
            text: "Metropolis"
        }
        Field {
            enabled: false
            placeholderText: "Disabled"
            width: Theme.posterWidth
        }
    }
    Row {
        spacing: Theme.spaceM

        Stepper {
            from: 128
            name: "Cache limit"
            objectName: "stepper"
            stepSize: 128
            to: 51200
            value: 2048
        }
        Stepper {
            from: 0
            name: "Days"
            to: 90
            value: 0
            valueText: "never"
        }
        Stepper {
            enabled: false
            name: "Disabled"
            value: 7
        }
    }
    Toggle {
        checked: true
        objectName: "toggle"
        text: "Stop seeding when the player closes"
        width: Theme.sentenceWidth
    }
    Toggle {
        text: "Keep downloaded data after playback"
        width: Theme.sentenceWidth
    }
    Toggle {
        enabled: false
        text: "Disabled, and with a text so long that it has to go on in a second line of its own"
        width: Theme.sentenceWidth
    }
    Separator {
        width: parent.width
    }
    Row {
        spacing: Theme.spaceXL

        Slider {
            bufferedFrom: 20
            bufferedTo: 75
            name: "Position"
            objectName: "slider"
            stepSize: 5
            to: 100
            value: 40
            width: Theme.fieldWidth
        }
        Slider {
            name: "Volume"
            value: 1
        }
        Slider {
            enabled: false
            name: "Disabled"
            value: 0.5
        }
    }
    Row {
        spacing: Theme.spaceXL

        ProgressBar {
            name: "Download"
            value: 0.4
        }
        ProgressBar {
            name: "Nothing yet"
        }
        ProgressBar {
            indeterminate: true
            name: "Connecting"
        }
        Spinner {
            anchors.verticalCenter: parent.verticalCenter
        }
    }
    Spinner {
        size: Theme.iconHuge
    }
}
