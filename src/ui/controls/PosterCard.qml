import QtQuick
import QtQuick.Templates as T
import Vellum.Theme

// A film to press: its picture, its title in two lines at most, a subtitle. `progress` from 0 to 1
// draws how far it was seen, below 0 nothing. While `loading` all of it is a skeleton. `current` is
// the owner's word that the keyboard stands on it, where it takes no focus itself.
T.AbstractButton {
    id: card

    property bool current: false
    property bool loading: false
    property real progress: -1
    property url source
    property string subtitle

    enabled: !loading
    focusPolicy: Qt.StrongFocus
    implicitHeight: implicitContentHeight
    implicitWidth: Theme.posterWidth
    Accessible.description: subtitle
    Accessible.name: text
    Accessible.role: Accessible.Button
    Keys.onEnterPressed: event => Press.on(card, event)
    Keys.onReturnPressed: event => Press.on(card, event)

    contentItem: Column {
        spacing: card.loading ? Theme.spaceS : Theme.spaceXS

        Picture {
            height: Math.round(width * Theme.posterShape)
            loading: card.loading
            opacity: card.down ? 1 - Theme.pressStrength : 1
            source: card.source
            width: parent.width

            Rectangle {
                anchors.fill: parent
                border.color: card.hovered ? Theme.track : Theme.hairline
                border.width: Theme.hairlineWidth
                color: Theme.clear
                radius: Theme.radiusM
                visible: !card.loading

                FocusRing {
                    shown: card.visualFocus || card.current
                }
            }
            // Most cards have none; a shelf makes many while it scrolls.
            Loader {
                active: card.progress >= 0
                anchors.bottom: parent.bottom
                anchors.left: parent.left
                anchors.margins: Theme.spaceS
                anchors.right: parent.right

                // qmllint disable unqualified
                sourceComponent: ProgressBar {
                    name: qsTr("Watched")
                    value: card.progress
                }
                // qmllint enable unqualified
            }
        }
        Label {
            id: title

            font.weight: Font.Medium
            maximumLineCount: 2
            text: card.text
            topPadding: Theme.spaceXS
            visible: !card.loading
            width: parent.width
            wrapMode: Text.Wrap
            Accessible.ignored: true
        }
        Label {
            color: Theme.textMuted
            font.pixelSize: Theme.fontSmall
            // A subtitle stands under its title, on whichever side that begins.
            horizontalAlignment: title.effectiveHorizontalAlignment
            text: card.subtitle
            visible: !card.loading && text !== ""
            width: parent.width
            Accessible.ignored: true
        }
        Loader {
            active: card.loading
            visible: active
            width: parent.width

            sourceComponent: Column {
                spacing: Theme.spaceS

                Skeleton {
                    height: Theme.fontBody
                    width: parent.width
                }
                Skeleton {
                    height: Theme.fontSmall
                    width: parent.width / 2
                }
            }
        }
    }
}
