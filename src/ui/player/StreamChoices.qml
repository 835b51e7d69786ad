pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Templates as T
import Vellum.Controls
import Vellum.Player
import Vellum.Theme

// Which of several files is meant. Tab walks the list, Return chooses.
PlayerCard {
    id: card

    required property StreamModel stream

    signal cancelled

    contentWidth: Theme.choicesWidth

    Label {
        font.pixelSize: Theme.fontHeading
        font.weight: Font.Medium
        horizontalAlignment: Text.AlignHCenter
        text: qsTr("Choose what to play")
        width: card.contentWidth
    }
    ListView {
        id: list

        // Moves by one; at either end the focus goes on to what is around the list.
        function walk(event: var, by: int): void {
            const next = currentIndex + by;
            event.accepted = next >= 0 && next < count;
            if (event.accepted)
                currentIndex = next;
        }

        activeFocusOnTab: true
        boundsBehavior: Flickable.StopAtBounds
        clip: true
        height: Theme.choicesHeight
        highlightMoveDuration: 0
        keyNavigationEnabled: false
        model: card.stream.choices
        objectName: "choiceList"
        spacing: Theme.spaceXS
        width: Theme.choicesWidth
        Accessible.name: qsTr("Files")
        Accessible.role: Accessible.List
        Keys.onBacktabPressed: event => walk(event, -1)
        Keys.onTabPressed: event => walk(event, 1)

        T.ScrollBar.vertical: ScrollBar {}
        delegate: ChoiceButton {
            required property int index
            required property var modelData

            objectName: "choice" + index
            size: modelData.size
            text: modelData.name
            width: list.width - (list.contentHeight > list.height ? Theme.scrollBarWidth + Theme.spaceXS : 0)
            onClicked: card.stream.pick(modelData.id)
        }
    }
    Button {
        anchors.horizontalCenter: parent?.horizontalCenter
        objectName: "cancelChoiceButton"
        text: qsTr("Cancel")
        onClicked: card.cancelled()
    }
}
