import QtQuick
import QtQuick.Templates as T
import Vellum.Theme

// Something is under way, and nobody knows how long.
T.BusyIndicator {
    id: spinner

    property int size: Theme.iconM

    implicitHeight: size
    implicitWidth: size
    Accessible.name: qsTr("Loading")
    Accessible.role: Accessible.Animation

    contentItem: Icon {
        color: Theme.textMuted
        name: "spinner"
        size: spinner.size
        visible: spinner.running

        NumberAnimation on turn {
            duration: Theme.turn
            from: 0
            loops: Animation.Infinite
            running: spinner.running && spinner.visible
            to: 360
        }
    }
}
