import QtQuick
import Vellum.Theme

// A short text of ours in a table's cell, lighter than a Label; a number stands at the right.
Text {
    property bool isNumber: false

    color: Theme.textMuted
    elide: Text.ElideRight
    font.family: Theme.family
    font.pixelSize: Theme.fontBody
    height: parent?.height ?? implicitHeight
    horizontalAlignment: isNumber ? Text.AlignRight : Text.AlignLeft
    leftPadding: Theme.spaceS
    rightPadding: Theme.spaceS
    textFormat: Text.PlainText
    verticalAlignment: Text.AlignVCenter
    Accessible.ignored: true
}
