import QtQuick
import Vellum.Controls

// A section whose screen is still to be built.
Item {
    id: page

    required property string section

    EmptyState {
        anchors.centerIn: parent
        icon: page.section
        text: qsTr("This screen is still being built.")
    }
}
