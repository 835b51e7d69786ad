pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Templates as T
import Vellum.Controls
import Vellum.Theme
import Vellum.Torrents

// The files of the torrent that is inspected, however many they are.
Rectangle {
    id: files

    required property InspectorModel model

    color: Theme.background
    implicitHeight: Math.min(list.contentHeight, 6 * Theme.controlHeight) + 2 * Theme.spaceXS
    radius: Theme.radiusM

    FocusRing {
        shown: list.activeFocus
    }
    ListView {
        id: list

        activeFocusOnTab: true
        anchors.fill: parent
        anchors.margins: Theme.spaceXS
        boundsBehavior: Flickable.StopAtBounds
        clip: true
        model: files.model
        objectName: "fileList"
        reuseItems: true
        Accessible.name: qsTr("Files")
        Accessible.role: Accessible.List
        Keys.onDownPressed: flick(0, -Theme.posterWidth * 3)
        Keys.onUpPressed: flick(0, Theme.posterWidth * 3)

        T.ScrollBar.vertical: ScrollBar {}

        delegate: InspectorFile {
            width: ListView.view?.width ?? 0
        }
    }
}
