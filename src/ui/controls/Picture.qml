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
    property int widest: 2 * Theme.posterWidth // in the picture's own pixels
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
        mipmap: true
        opacity: status === Image.Ready ? 1 : 0
        source: picture.source
        // Whatever size a stranger sends, no more is kept; and a frame that grows loads nothing anew.
        sourceSize.width: picture.widest
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
