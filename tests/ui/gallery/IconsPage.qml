pragma ComponentBehavior: Bound
import QtQuick
import Vellum.Controls
import Vellum.Icons
import Vellum.Theme

// The whole set with its names.
Flow {
    id: page

    spacing: Theme.spaceM

    IconShape {
        id: set

        visible: false
    }
    Repeater {
        model: set.names()

        delegate: Column {
            required property string modelData

            spacing: Theme.spaceXS
            width: Theme.iconHuge + Theme.spaceXL

            Icon {
                anchors.horizontalCenter: parent.horizontalCenter
                name: parent.modelData
                size: Theme.iconL
            }
            Label {
                color: Theme.textFaint
                font.pixelSize: Theme.fontSmall
                horizontalAlignment: Text.AlignHCenter
                text: parent.modelData
                width: parent.width
            }
        }
    }
}
