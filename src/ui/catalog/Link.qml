import QtQuick
import QtQuick.Templates as T
import Vellum.Controls
import Vellum.Theme

// Words that open a page in the browser.
T.AbstractButton {
    id: link

    focusPolicy: Qt.StrongFocus
    implicitHeight: implicitContentHeight
    implicitWidth: implicitContentWidth
    Accessible.name: text
    Accessible.role: Accessible.Link
    Keys.onEnterPressed: event => Press.on(link, event)
    Keys.onReturnPressed: event => Press.on(link, event)

    contentItem: Label {
        color: Theme.accent
        font.underline: link.hovered
        text: link.text
        Accessible.ignored: true
    }

    FocusRing {
        radius: Theme.radiusS
        shown: link.visualFocus
    }
    HoverHandler {
        cursorShape: Qt.PointingHandCursor
    }
}
