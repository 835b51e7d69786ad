pragma ComponentBehavior: Bound
import QtQuick
import Vellum.Controls
import Vellum.Theme
import Vellum.Window

// The sections to choose from, and the menu; its right edge can be dragged.
Rectangle {
    id: sidebar

    required property WindowModel model

    signal menuWanted(Item item)

    function walk(from: int, by: int) {
        (entries.itemAt(from + by) as Item)?.forceActiveFocus(Qt.TabFocusReason);
    }

    color: Theme.panel
    width: Theme.sidebarWidth
    Accessible.name: qsTr("Sections")
    Accessible.role: Accessible.PageTabList

    Item {
        id: head

        anchors.left: parent.left
        anchors.margins: Theme.spaceM
        anchors.right: parent.right
        anchors.top: parent.top
        height: Theme.rowHeight

        Label {
            anchors.left: parent.left
            anchors.leftMargin: Theme.spaceM
            anchors.verticalCenter: parent.verticalCenter
            font.pixelSize: Theme.fontHeading
            font.weight: Font.DemiBold
            text: "Vellum"
        }
        IconButton {
            id: menuButton

            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            color: Theme.textMuted
            icon.name: "more"
            objectName: "playbackMenuButton"
            text: qsTr("Playback")
            onClicked: sidebar.menuWanted(menuButton)
        }
    }
    Column {
        anchors.left: parent.left
        anchors.margins: Theme.spaceM
        anchors.right: parent.right
        anchors.top: head.bottom
        anchors.topMargin: Theme.spaceS
        spacing: Theme.spaceXS

        Repeater {
            id: entries

            model: sidebar.model.sections

            delegate: SidebarItem {
                required property int index
                required property var modelData

                highlighted: sidebar.model.section === modelData.id
                icon.name: modelData.icon
                objectName: "section-" + modelData.id
                text: modelData.title
                width: parent?.width ?? 0
                Keys.onDownPressed: sidebar.walk(index, 1)
                Keys.onUpPressed: sidebar.walk(index, -1)
                onClicked: sidebar.model.section = modelData.id
            }
        }
    }
    Rectangle {
        anchors.bottom: parent.bottom
        anchors.right: parent.right
        anchors.top: parent.top
        color: Theme.hairline
        width: Theme.hairlineWidth
    }
    MouseArea {
        anchors.bottom: parent.bottom
        anchors.horizontalCenter: parent.right
        anchors.top: parent.top
        cursorShape: Qt.SplitHCursor
        width: Theme.spaceS
        onPositionChanged: event => {
            const edge = mapToItem(sidebar, event.x, 0).x;
            sidebar.width = Math.max(Theme.sidebarNarrowest, Math.min(edge, Theme.sidebarWidest));
        }
    }
}
