import QtQuick
import Vellum.Theme

// A picture from an address, filling a rounded frame: a skeleton while it loads, a film when there
// is none. `ground` is the colour behind it, which the corners are cut out with.
Item {
    id: picture

    property color ground: Theme.background
    property bool loading: false
    property int radius: Theme.radiusM
    property url source
    readonly property bool waiting: loading || image.status === Image.Loading

    Rectangle {
        anchors.fill: parent
        color: Theme.panel
        radius: picture.radius
        visible: image.status !== Image.Ready
    }
    Icon {
        anchors.centerIn: parent
        color: Theme.textFaint
        name: "film"
        size: Math.min(Theme.iconHuge, parent.width / 2, parent.height / 2)
        visible: !picture.waiting && image.status !== Image.Ready
    }
    Skeleton {
        anchors.fill: parent
        radius: picture.radius
        visible: picture.waiting
    }
    Image {
        id: image

        anchors.fill: parent
        asynchronous: true
        fillMode: Image.PreserveAspectCrop
        opacity: status === Image.Ready ? 1 : 0
        source: picture.source
        // Twice the frame, for dense screens; whatever size a stranger sends, no more is decoded.
        sourceSize.width: 2 * picture.width
        Accessible.ignored: true

        Behavior on opacity {
            NumberAnimation {
                duration: Theme.motionSlow
                easing.type: Theme.easing
            }
        }
    }
    Rectangle {
        readonly property int cut: Math.ceil(picture.radius / 2)

        anchors.fill: parent
        anchors.margins: -cut
        border.color: picture.ground
        border.width: cut
        color: Theme.clear
        radius: picture.radius + cut
        visible: image.status === Image.Ready
    }
}
