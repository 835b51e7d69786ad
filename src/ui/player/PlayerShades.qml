import QtQuick
import Vellum.Theme

// Lies between the picture and what is read over it, at both ends: any picture can be under it.
Item {
    id: shades

    property int bottomHeight: 0
    property int topHeight: 0

    Rectangle {
        height: shades.topHeight + Theme.spaceXXL
        width: parent.width

        gradient: Gradient {
            GradientStop {
                color: Theme.controlsShade
                position: 0
            }
            GradientStop {
                color: Theme.clear
                position: 1
            }
        }
    }
    Rectangle {
        anchors.bottom: parent.bottom
        height: shades.bottomHeight + Theme.spaceHuge
        width: parent.width

        gradient: Gradient {
            GradientStop {
                color: Theme.clear
                position: 0
            }
            GradientStop {
                color: Theme.controlsShade
                position: 1 - shades.bottomHeight / (shades.bottomHeight + Theme.spaceHuge) / 2
            }
            GradientStop {
                color: Theme.controlsShade
                position: 1
            }
        }
    }
}
