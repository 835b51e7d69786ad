import QtQuick
import Vellum.Controls
import Vellum.Theme

// One line of text to type under what it is, which stays readable when something is typed.
Column {
    id: labeled

    property alias field: input
    property alias label: words.text
    property alias text: input.text

    spacing: Theme.spaceXS
    width: parent?.width ?? 0

    Label {
        id: words

        color: Theme.textMuted
        font.pixelSize: Theme.fontSmall
        width: parent.width
        Accessible.ignored: true
    }
    Field {
        id: input

        objectName: "field"
        width: parent.width
        Accessible.name: words.text
    }
}
