import QtQuick
import Vellum.Controls
import Vellum.Theme

// How the stream does while it plays, and what there is to say about it.
Rectangle {
    id: corner

    property int widest: Theme.tipWidest
    property string notice
    property string text

    color: Theme.captionShade
    height: lines.height + 2 * Theme.spaceXS
    radius: Theme.radiusM
    width: lines.width + 2 * Theme.spaceS

    FontMetrics {
        id: metrics

        font: numbers.font
    }
    Column {
        id: lines

        width: Math.min(corner.widest, Math.ceil(Math.max(metrics.advanceWidth(corner.text), metrics.advanceWidth(corner.notice))) + Theme.hairlineWidth)
        x: Theme.spaceS
        y: Theme.spaceXS

        Label {
            id: numbers

            font.pixelSize: Theme.fontSmall
            horizontalAlignment: Text.AlignRight
            objectName: "streamCorner"
            text: corner.text
            width: parent.width
        }
        Label {
            id: words

            color: Theme.warn
            font.pixelSize: Theme.fontSmall
            horizontalAlignment: Text.AlignRight
            objectName: "streamNotice"
            text: corner.notice
            visible: text !== ""
            width: parent.width
            wrapMode: Text.Wrap
        }
    }
}
