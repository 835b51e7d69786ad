import QtQuick
import QtQuick.Templates as T
import Vellum.Theme

// Text of one line unless `wrapMode` says otherwise; what does not fit ends in an ellipsis and shows
// whole in a tooltip. Titles from outside are never read as markup, and keep their own direction.
T.Label {
    id: label

    readonly property int mostLines: 1000

    color: Theme.text
    elide: Text.ElideRight
    font.family: Theme.family
    font.pixelSize: Theme.fontBody
    // Line feeds in it are none of ours.
    maximumLineCount: wrapMode === Text.NoWrap ? 1 : mostLines
    opacity: enabled ? 1 : Theme.disabledStrength
    textFormat: Text.PlainText
    verticalAlignment: Text.AlignVCenter
    Accessible.name: text
    Accessible.role: Accessible.StaticText

    HoverHandler {
        id: pointer
    }
    Tip {
        shown: label.truncated && pointer.hovered
        text: label.text
    }
}
