import QtQuick
import Vellum.Controls
import Vellum.Theme

// Posters in all their states.
Flickable {
    id: page

    clip: true
    contentHeight: flow.height + 2 * Theme.spaceS
    contentWidth: width

    Flow {
        id: flow

        spacing: Theme.spaceL
        width: parent.width - 2 * Theme.spaceS
        x: Theme.spaceS
        y: Theme.spaceS

        PosterCard {
            property int presses: 0

            objectName: "poster"
            source: Qt.resolvedUrl("poster.svg")
            subtitle: "1927 · Fritz Lang"
            text: "Metropolis"
            onClicked: ++presses
        }
        PosterCard {
            progress: 0.6
            source: Qt.resolvedUrl("poster.svg")
            subtitle: "A subtitle that is much too long for the width of a card"
            text: "The Cabinet of Dr. Caligari, in the Restored Version with Tints and an Orchestral Score"
        }
        PosterCard {
            loading: true
        }
        PosterCard {
            progress: 0
            subtitle: "Vidarium"
            text: "No picture"
        }
        PosterCard {
            source: "qrc:/missing.svg"
            subtitle: "1964"
            text: "סרט ארוך מאוד עם שם שלא נכנס בשורה אחת ולא בשתיים"
        }
        PosterCard {
            source: Qt.resolvedUrl("poster.svg")
            text: "<b>Not markup</b>"
        }
    }
}
