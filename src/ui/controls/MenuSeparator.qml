import QtQuick
import QtQuick.Templates as T
import Vellum.Theme

// A line between groups of choices.
T.MenuSeparator {
    implicitHeight: Theme.spaceS + Theme.hairlineWidth
    verticalPadding: Theme.spaceXS
    Accessible.ignored: true

    contentItem: Rectangle {
        color: Theme.hairline
    }
}
