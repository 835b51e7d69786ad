import QtQuick
import Vellum.Controls
import Vellum.Theme

// A quiet remark of any length behind a drawing.
Item {
    id: line

    property color color: Theme.textFaint
    property alias icon: drawing.name
    property alias text: words.text

    implicitHeight: words.implicitHeight
    implicitWidth: Theme.sentenceWidth

    Icon {
        id: drawing

        color: line.color
        size: Theme.iconS
    }
    Label {
        id: words

        color: line.color
        font.pixelSize: Theme.fontSmall
        width: parent.width - x
        wrapMode: Text.Wrap
        x: drawing.width + Theme.spaceS
    }
}
