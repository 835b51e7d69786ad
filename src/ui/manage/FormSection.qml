import QtQuick
import Vellum.Controls
import Vellum.Theme

// A titled group of rows, `parent.width` wide, with a remark under it.
Column {
    id: section

    property alias note: remark.text
    default property alias rows: column.data
    property alias title: heading.text

    spacing: Theme.spaceS
    width: parent?.width ?? 0
    Accessible.name: title
    Accessible.role: Accessible.Grouping

    Label {
        id: heading

        font.pixelSize: Theme.fontHeading
        font.weight: Font.Medium
        visible: text !== ""
        width: parent.width
    }
    Rectangle {
        border.color: Theme.hairline
        border.width: Theme.hairlineWidth
        color: Theme.panel
        height: column.implicitHeight
        radius: Theme.radiusM
        visible: height > 0
        width: parent.width

        Column {
            id: column

            width: parent.width
        }
    }
    Label {
        id: remark

        color: Theme.textFaint
        font.pixelSize: Theme.fontSmall
        leftPadding: Theme.spaceXS
        rightPadding: Theme.spaceXS
        visible: text !== ""
        width: parent.width
        wrapMode: Text.Wrap
    }
}
