import QtQuick
import QtQuick.Templates as T
import Vellum.Theme

// Where one is in what is longer than its frame; there only while something moves or points at it.
T.ScrollBar {
    id: bar

    implicitHeight: Theme.scrollBarWidth
    implicitWidth: Theme.scrollBarWidth
    minimumSize: Theme.scrollBarShortest / Math.max(Theme.scrollBarShortest, orientation === Qt.Vertical ? height : width)
    padding: Theme.spaceXS / 2
    visible: policy !== T.ScrollBar.AlwaysOff && size < 1
    Accessible.ignored: true

    contentItem: Rectangle {
        color: bar.pressed ? Theme.textMuted : Theme.textFaint
        opacity: bar.active || bar.policy === T.ScrollBar.AlwaysOn ? 1 : 0
        radius: Math.min(width, height) / 2

        Behavior on opacity {
            NumberAnimation {
                duration: Theme.motionSlow
                easing.type: Theme.easing
            }
        }
    }
}
