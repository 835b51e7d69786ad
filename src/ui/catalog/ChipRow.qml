pragma ComponentBehavior: Bound
import QtQuick
import Vellum.Controls
import Vellum.Theme

// Words to press, in one row that scrolls sideways; chips without words while `loading`.
Flickable {
    id: row

    property bool loading: false
    property var words: [] // texts

    signal picked(string word)

    function reveal(chip: Item) {
        const left = chip.x - Theme.spaceS;
        const right = chip.x + chip.width + Theme.spaceS;
        contentX = Math.max(right - width, Math.min(contentX, left), 0);
    }

    boundsBehavior: Flickable.StopAtBounds
    clip: true
    contentHeight: height
    contentWidth: chips.width
    implicitHeight: Theme.chipHeight + 2 * Theme.spaceS

    Row {
        id: chips

        padding: Theme.spaceS
        spacing: Theme.spaceS

        Repeater {
            model: row.loading ? [] : row.words

            delegate: Chip {
                id: chip

                required property int index
                required property string modelData

                objectName: "chip" + index
                text: modelData
                onActiveFocusChanged: if (activeFocus)
                    row.reveal(chip)
                onClicked: row.picked(modelData)
            }
        }
        Repeater {
            model: row.loading ? Math.max(0, Math.ceil(row.width / Theme.posterWidth)) : 0

            delegate: Skeleton {
                height: Theme.chipHeight
                radius: height / 2
                width: Theme.posterWidth / 2
            }
        }
    }
}
