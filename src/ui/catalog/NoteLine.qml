import QtQuick
import Vellum.Controls
import Vellum.Theme

// A sentence of any length behind a drawing.
Item {
    id: line

    property color color: Theme.textMuted
    property alias icon: drawing.name
    property alias text: words.text

    implicitHeight: Math.max(drawing.height, words.implicitHeight)
    implicitWidth: Theme.sentenceWidth

    Icon {
        id: drawing

        color: line.color
    }
    Label {
        id: words

        color: line.color
        topPadding: Math.max(0, (drawing.height - font.pixelSize) / 2 - Theme.hairlineWidth)
        width: parent.width - x
        wrapMode: Text.Wrap
        x: drawing.width + Theme.spaceS
    }
}
