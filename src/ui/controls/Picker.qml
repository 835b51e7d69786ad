pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Templates as T
import Vellum.Theme

// One of several: a button that shows its `label` and the choice in force, and opens a menu of all.
// `choices` is a list of { text, value }; choosing emits `picked`, and whoever owns `value` sets it.
T.Button {
    id: picker

    required property var choices
    property string label
    property var value
    readonly property string current: choices.find(choice => choice.value === value)?.text ?? ""

    signal picked(var value)

    font.family: Theme.family
    font.pixelSize: Theme.fontBody
    horizontalPadding: Theme.spaceM
    implicitHeight: Theme.controlHeight
    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    text: label !== "" ? qsTr("%1: %2").arg(label).arg(current) : current
    Accessible.name: text
    Accessible.role: Accessible.ButtonDropDown
    Keys.onDownPressed: event => Press.on(picker, event)
    Keys.onEnterPressed: event => Press.on(picker, event)
    Keys.onReturnPressed: event => Press.on(picker, event)
    onClicked: {
        menu.popup(picker, 0, height + Theme.spaceXS);
        menu.currentIndex = choices.findIndex(choice => choice.value === value);
    }

    background: ControlSurface {
        border.color: Theme.hairline
        border.width: Theme.hairlineWidth
        color: Theme.raised
        control: picker
    }
    contentItem: Item {
        implicitHeight: words.implicitHeight
        implicitWidth: words.implicitWidth + Theme.spaceS + arrow.width

        Label {
            id: words

            anchors.verticalCenter: parent.verticalCenter
            font: picker.font
            text: picker.text
            width: Math.min(Math.ceil(implicitWidth), parent.width - Theme.spaceS - arrow.width)
            Accessible.ignored: true
        }
        Icon {
            id: arrow

            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            color: Theme.textMuted
            name: "chevron-down"
            size: Theme.iconS
        }
    }

    Menu {
        id: menu

        Instantiator {
            model: picker.choices

            delegate: MenuItem {
                required property var modelData

                checkable: true
                checked: modelData.value === picker.value
                text: modelData.text
                onTriggered: {
                    // The press has toggled the mark; only the owner's value decides it.
                    checked = Qt.binding(() => modelData.value === picker.value);
                    picker.picked(modelData.value);
                }
            }

            onObjectAdded: (index, object) => menu.insertItem(index, object as T.MenuItem)
            onObjectRemoved: (index, object) => menu.removeItem(object as T.MenuItem)
        }
    }
}
