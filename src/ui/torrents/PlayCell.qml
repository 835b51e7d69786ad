import QtQuick
import Vellum.Controls
import Vellum.Theme

// Plays a row, and shows what has become of that. `playState` is "", "starting", "playing" or
// "failed", and `failure` the sentence then.
Item {
    id: cell

    property string failure
    property bool hasVariants: false
    property bool playable: true
    property string playState
    // Of a table's buttons only those of the row on which the keyboard stands are stops of Tab.
    property bool reachable: false

    signal played
    signal variantsWanted(Item at)

    implicitHeight: Theme.controlHeight
    implicitWidth: 2 * Theme.controlHeight

    IconButton {
        id: button

        anchors.verticalCenter: parent.verticalCenter
        color: cell.playState === "failed" ? Theme.bad : cell.playState === "playing" ? Theme.good : Theme.accent
        enabled: cell.playable
        focusPolicy: cell.reachable ? Qt.TabFocus : Qt.NoFocus
        icon.name: cell.playState === "starting" ? "" : cell.playState === "playing" ? "audio" : cell.playState === "failed" ? "refresh" : "play"
        objectName: "playButton"
        text: cell.playState === "starting" ? "" : cell.playState === "playing" ? qsTr("Now playing") : cell.playState === "failed" ? cell.failure : qsTr("Stream now")
        Accessible.name: cell.playState === "starting" ? qsTr("Starting") : text
        onClicked: cell.played()

        Loader {
            active: cell.playState === "starting"
            anchors.centerIn: parent

            sourceComponent: Spinner {
                objectName: "playSpinner"
            }
        }
    }
    Loader {
        active: cell.hasVariants
        anchors.left: button.right
        anchors.verticalCenter: parent.verticalCenter

        // qmllint disable unqualified
        sourceComponent: IconButton {
            id: chevron

            color: Theme.textMuted
            focusPolicy: cell.reachable ? Qt.TabFocus : Qt.NoFocus
            icon.name: "chevron-down"
            implicitWidth: Theme.spaceXL
            objectName: "variantsButton"
            size: Theme.iconS
            text: qsTr("Choose streaming quality")
            onClicked: cell.variantsWanted(chevron)
        }
        // qmllint enable unqualified
    }
}
