import QtQuick
import Vellum.Theme

// A drawing and a text side by side, together in the middle; either may be missing.
Item {
    id: pair

    property color color: Theme.text
    property alias font: words.font
    property alias icon: drawing.name
    property alias text: words.text
    property int size: Theme.iconM
    property int spacing: Theme.spaceS
    property bool centred: true
    readonly property int lead: drawing.name !== "" ? size + (words.text !== "" ? spacing : 0) : 0

    implicitHeight: Math.max(size, words.implicitHeight)
    implicitWidth: Math.ceil(words.implicitWidth) + lead

    Icon {
        id: drawing

        anchors.verticalCenter: parent.verticalCenter
        color: pair.color
        size: pair.size
        visible: name !== ""
        x: pair.centred ? Math.max(0, (pair.width - pair.lead - words.width) / 2) : 0
    }
    Label {
        id: words

        anchors.verticalCenter: parent.verticalCenter
        color: pair.color
        horizontalAlignment: Text.AlignLeft
        width: Math.min(Math.ceil(implicitWidth), Math.max(0, pair.width - pair.lead))
        x: drawing.x + pair.lead
        Accessible.ignored: true
    }
}
