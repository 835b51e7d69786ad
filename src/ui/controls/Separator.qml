import QtQuick
import Vellum.Theme

// A hair-line across its parent.
Rectangle {
    color: Theme.hairline
    implicitHeight: Theme.hairlineWidth
    implicitWidth: Theme.hairlineWidth
    Accessible.ignored: true
}
