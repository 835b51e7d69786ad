pragma ComponentBehavior: Bound
import QtQuick
import Vellum.Controls
import Vellum.Theme

// Where the first results will be, while the providers are asked.
Item {
    id: rows

    property string text

    clip: true
    Accessible.name: text
    Accessible.role: Accessible.StaticText

    Label {
        id: words

        color: Theme.textMuted
        font.pixelSize: Theme.fontSmall
        height: Theme.chipHeight
        text: rows.text
        width: parent.width - x
        x: Theme.controlHeight + 2 * Theme.spaceL
        Accessible.ignored: true
    }
    Column {
        anchors.top: words.bottom
        width: parent.width

        Repeater {
            model: Math.max(0, Math.floor((rows.height - words.height) / Theme.rowHeight))

            delegate: Item {
                id: row

                required property int index

                height: Theme.rowHeight
                width: rows.width

                Skeleton {
                    anchors.verticalCenter: parent.verticalCenter
                    height: Theme.iconM
                    radius: height / 2
                    width: height
                    x: Theme.spaceS
                }
                Skeleton {
                    anchors.verticalCenter: parent.verticalCenter
                    height: Theme.fontBody
                    // Titles differ in length.
                    width: Theme.fieldWidth + row.index * Theme.spaceHuge % Theme.sliderWidth
                    x: Theme.controlHeight + 2 * Theme.spaceL
                }
                Skeleton {
                    anchors.right: parent.right
                    anchors.rightMargin: Theme.spaceS
                    anchors.verticalCenter: parent.verticalCenter
                    height: Theme.fontBody
                    width: Theme.fieldWidth
                }
            }
        }
    }
}
