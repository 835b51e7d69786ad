import QtQuick
import Vellum.Theme

// A picture from an address, filling a rounded frame: a skeleton while it loads, a film when there
// is none. What lies on the web comes through the engine's provider "poster", which bounds what
// strangers send; otherwise the program's own are shown, and no others. `ground` is the colour
// behind it, which the corners are cut out with.
Item {
    id: picture

    property color ground: Theme.background
    property bool loading: false
    property int radius: Theme.radiusM
    property url source
    property int widest: 2 * Theme.posterWidth // in the picture's own pixels
    // What the provider could not get is a single point.
    readonly property bool ready: image.status === Image.Ready && image.implicitWidth > 1
    readonly property bool waiting: loading || image.status === Image.Loading

    function shown(address: string): string {
        if (/^https?:/i.test(address))
            return "image://poster/" + Qt.btoa(address);
        return /^(qrc|image):/.test(address) ? address : "";
    }

    Rectangle {
        anchors.fill: parent
        color: Qt.colorEqual(picture.ground, Theme.panel) ? Theme.raised : Theme.panel
        radius: picture.radius
        visible: !picture.ready
    }
    Icon {
        anchors.centerIn: parent
        color: Theme.textFaint
        name: "film"
        size: Math.min(Theme.iconHuge, parent.width / 2, parent.height / 2)
        visible: !picture.waiting && !picture.ready
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
        cache: false // or every picture that was ever shown stays in memory
        fillMode: Image.PreserveAspectCrop
        mipmap: true
        opacity: picture.ready ? 1 : 0
        source: picture.shown("" + picture.source)
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
        visible: picture.ready
    }
}
