import QtQuick
import QtQuick.Templates as T
import Vellum.Theme

// How far something is; `name` tells a screen reader what. `indeterminate` runs to and fro.
T.ProgressBar {
    id: bar

    property color color: Theme.accent
    property string name

    implicitHeight: Theme.barHeight
    implicitWidth: Theme.sliderWidth
    Accessible.name: name
    Accessible.role: Accessible.ProgressBar

    background: Rectangle {
        color: Theme.track
        radius: height / 2
    }
    contentItem: Item {
        clip: bar.indeterminate

        Rectangle {
            color: bar.color
            height: parent.height
            radius: height / 2
            visible: bar.indeterminate || bar.visualPosition > 0
            width: bar.indeterminate ? parent.width / 3 : Math.max(height, parent.width * bar.visualPosition)

            NumberAnimation on x {
                duration: Theme.turn
                from: -bar.width / 3
                loops: Animation.Infinite
                running: bar.indeterminate && bar.visible
                to: bar.width
            }
        }
    }
}
