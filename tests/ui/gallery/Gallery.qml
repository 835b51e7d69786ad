pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Layouts
import QtQuick.Window
import Vellum.Controls
import Vellum.Theme

// Every control in every state, on the pages of a window: the first look at the set, and the stage
// of its test.
Window {
    id: window

    property int page: 0
    readonly property var pages: [
        { icon: "play", title: "Buttons" },
        { icon: "edit", title: "Inputs" },
        { icon: "grid", title: "Cards" },
        { icon: "list", title: "Table and banners" },
        { icon: "discover", title: "Icons" }
    ]
    property alias alert: alert
    property alias menu: buttons.menu
    property alias sheet: sheet

    color: Theme.background
    height: 640
    title: "Vellum gallery"
    visible: true
    width: 980

    RowLayout {
        anchors.fill: parent
        spacing: 0

        Rectangle {
            Layout.fillHeight: true
            Layout.preferredWidth: Theme.menuWidth
            color: Theme.panel

            Column {
                anchors.fill: parent
                anchors.margins: Theme.spaceM
                spacing: Theme.spaceXS

                Repeater {
                    model: window.pages

                    delegate: SidebarItem {
                        required property int index
                        required property var modelData

                        highlighted: window.page === index
                        icon.name: modelData.icon
                        objectName: "section" + index
                        text: modelData.title
                        width: parent?.width ?? 0
                        onClicked: window.page = index
                    }
                }
            }
        }
        StackLayout {
            Layout.fillHeight: true
            Layout.fillWidth: true
            Layout.margins: Theme.spaceXL
            currentIndex: window.page

            ButtonsPage {
                id: buttons

                onAlertWanted: alert.open()
                onSheetWanted: sheet.open()
            }
            InputsPage {}
            CardsPage {}
            TablePage {}
            IconsPage {}
        }
    }

    Alert {
        id: alert

        property int last: -2

        actions: [{ text: "Try anyway", role: "default" }, { text: "Cancel", role: "cancel" }]
        message: "This torrent reports 0 seeders, so streaming may never start. You can try anyway."
        objectName: "alert"
        title: "No seeders reported"
        onChosen: index => last = index
    }
    Sheet {
        id: sheet

        objectName: "sheet"
        title: "A sheet with a title that is far too long for the room that it has between its edge and the button that closes it"

        Label {
            text: "Info hash: 0123456789abcdef0123456789abcdef01234567"
            width: parent.width
        }
        Field {
            objectName: "sheetField"
            placeholderText: "Name"
            width: parent.width
        }
        Button {
            objectName: "sheetButton"
            prominent: true
            text: "Add"
        }
    }
}
