import QtQuick
import QtQuick.Templates as T
import Vellum.Controls
import Vellum.Theme

// A film as a row to press: its picture, its title and where it comes from.
T.AbstractButton {
    id: row

    property bool current: false // the keyboard stands on it
    property bool loading: false
    property url source
    property string subtitle

    enabled: !loading
    implicitHeight: Math.round(Theme.thumbWidth * Theme.posterShape) + 2 * Theme.spaceS
    padding: Theme.spaceS
    Accessible.description: subtitle
    Accessible.name: text
    Accessible.role: Accessible.Button

    background: ControlSurface {
        control: row

        FocusRing {
            anchors.margins: 0
            shown: row.current
        }
    }
    contentItem: Item {
        Picture {
            id: picture

            height: parent.height
            loading: row.loading
            radius: Theme.radiusS
            source: row.source
            width: Theme.thumbWidth
        }
        Column {
            anchors.left: picture.right
            anchors.leftMargin: Theme.spaceL
            anchors.right: origin.left
            anchors.rightMargin: Theme.spaceL
            anchors.verticalCenter: parent.verticalCenter
            spacing: Theme.spaceXS
            visible: !row.loading

            Label {
                id: title

                font.weight: Font.Medium
                text: row.text
                width: parent.width
                Accessible.ignored: true
            }
            Label {
                color: Theme.textMuted
                font.pixelSize: Theme.fontSmall
                horizontalAlignment: title.effectiveHorizontalAlignment
                text: row.subtitle
                visible: text !== ""
                width: parent.width
                Accessible.ignored: true
            }
        }
        Label {
            id: origin

            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            color: Theme.textFaint
            font.pixelSize: Theme.fontSmall
            text: "Vidarium"
            visible: !row.loading
        }
        Skeleton {
            anchors.left: picture.right
            anchors.leftMargin: Theme.spaceL
            anchors.verticalCenter: parent.verticalCenter
            height: Theme.fontBody
            visible: row.loading
            width: Theme.fieldWidth
        }
    }
}
