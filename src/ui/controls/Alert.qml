pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Templates as T
import Vellum.Theme

// A question or a notice that wants an answer before anything else. `actions` is a list of
// { text, role }, the role "cancel", "destructive", "default" or none; Escape answers with the one
// that cancels. Whatever the answer, `chosen` tells its index, once, after the alert has closed.
T.Dialog {
    id: alert

    property var actions: [{ text: qsTr("OK"), role: "cancel" }]
    property string message
    property int answer: -1
    readonly property FocusReturn focusReturn: FocusReturn {
        popup: alert
    }

    signal chosen(int index)

    function indexOf(role: string): int {
        return actions.findIndex(action => action.role === role);
    }

    anchors.centerIn: T.Overlay.overlay
    closePolicy: T.Popup.CloseOnEscape
    focus: true
    implicitHeight: implicitContentHeight + topPadding + bottomPadding
    modal: true
    padding: Theme.spaceXL
    width: Math.min(Theme.alertWidth, (T.Overlay.overlay?.width ?? 0) - 2 * Theme.spaceXL)
    onAboutToShow: answer = -1
    onClosed: chosen(answer >= 0 ? answer : indexOf("cancel"))
    onOpened: (buttons.itemAt(Math.max(0, indexOf("default"))) as Item)?.forceActiveFocus(Qt.TabFocusReason)

    background: Rectangle {
        border.color: Theme.hairline
        border.width: Theme.hairlineWidth
        color: Theme.panel
        radius: Theme.radiusL
    }
    contentItem: Item {
        implicitHeight: column.implicitHeight
        Accessible.description: alert.message
        Accessible.name: alert.title
        Accessible.role: Accessible.AlertMessage

        Column {
            id: column

            spacing: Theme.spaceS
            width: parent.width

            Label {
                font.pixelSize: Theme.fontHeading
                font.weight: Font.Medium
                text: alert.title
                width: parent.width
                wrapMode: Text.Wrap
            }
            Label {
                color: Theme.textMuted
                text: alert.message
                width: parent.width
                wrapMode: Text.Wrap
            }
            Item {
                height: Theme.spaceM
                width: parent.width
            }
            Flow {
                layoutDirection: Qt.RightToLeft
                spacing: Theme.spaceS
                width: parent.width

                Repeater {
                    id: buttons

                    model: alert.actions

                    delegate: Button {
                        required property int index
                        required property var modelData

                        destructive: modelData.role === "destructive"
                        prominent: modelData.role === "default" || alert.actions.length === 1
                        text: modelData.text
                        width: Math.min(implicitWidth, parent?.width ?? implicitWidth)
                        onClicked: {
                            alert.answer = index;
                            alert.close();
                        }
                    }
                }
            }
        }
    }
    enter: Fade {}
    exit: Fade {
        out: true
    }
    T.Overlay.modal: Rectangle {
        color: Theme.shade
    }
}
