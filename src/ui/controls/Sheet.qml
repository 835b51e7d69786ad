import QtQuick
import QtQuick.Templates as T
import Vellum.Theme

// A page that lies over the window until it is closed; Escape closes it. Its children stand under
// each other, `parent.width` wide, and scroll where the window is too low for them.
T.Dialog {
    id: sheet

    default property alias content: body.data
    property bool titleShown: true // where the content does not tell it itself
    readonly property FocusReturn focusReturn: FocusReturn {
        popup: sheet
    }

    anchors.centerIn: T.Overlay.overlay
    focus: true
    height: Math.min(implicitHeight, (T.Overlay.overlay?.height ?? 0) - 2 * Theme.spaceXXL)
    implicitHeight: implicitHeaderHeight + implicitContentHeight + topPadding + bottomPadding + implicitFooterHeight
    implicitWidth: Theme.sheetWidth
    modal: true
    padding: Theme.spaceXL
    topPadding: Theme.spaceS
    width: Math.min(implicitWidth, (T.Overlay.overlay?.width ?? 0) - 2 * Theme.spaceXXL)

    background: Rectangle {
        border.color: Theme.hairline
        border.width: Theme.hairlineWidth
        color: Theme.panel
        radius: Theme.radiusL
    }
    contentItem: Flickable {
        clip: contentHeight > height
        contentHeight: body.implicitHeight
        implicitHeight: contentHeight

        T.ScrollBar.vertical: ScrollBar {}

        Column {
            id: body

            spacing: Theme.spaceM
            width: parent.width
        }
    }
    enter: Fade {}
    exit: Fade {
        out: true
    }
    header: Item {
        implicitHeight: close.height + 2 * Theme.spaceM
        Accessible.name: sheet.title
        Accessible.role: Accessible.Dialog

        Label {
            anchors.left: parent.left
            anchors.leftMargin: Theme.spaceXL
            anchors.right: close.left
            anchors.verticalCenter: parent.verticalCenter
            font.pixelSize: Theme.fontHeading
            font.weight: Font.Medium
            opacity: sheet.titleShown ? 1 : 0
            text: sheet.title
            Accessible.ignored: true

            Behavior on opacity {
                NumberAnimation {
                    duration: Theme.motion
                    easing.type: Theme.easing
                }
            }
        }
        IconButton {
            id: close

            anchors.right: parent.right
            anchors.rightMargin: Theme.spaceM
            anchors.verticalCenter: parent.verticalCenter
            color: Theme.textMuted
            icon.name: "close"
            objectName: "closeSheetButton"
            text: qsTr("Close")
            onClicked: sheet.close()
        }
    }
    T.Overlay.modal: Rectangle {
        color: Theme.shade
    }
}
