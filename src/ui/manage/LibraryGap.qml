import QtQuick
import Vellum.Controls
import Vellum.Manage
import Vellum.Theme

// Stands at an end of the library's list where a group of rows would, and says that there are none.
Item {
    id: gap

    property bool filled: false // the group has rows
    property alias icon: sentence.icon
    property alias name: sentence.objectName
    property alias text: sentence.text
    property alias title: section.title

    height: filled ? 0 : section.implicitHeight + Theme.spaceXL

    FormSection {
        id: section

        visible: !gap.filled
        width: parent.width - 2 * Theme.spaceM
        x: Theme.spaceM

        EmptyState {
            id: sentence

            height: implicitHeight + 2 * Theme.spaceXXL
            width: parent.width
        }
    }
}
