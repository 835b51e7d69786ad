import QtQuick
import Vellum.Controls
import Vellum.Theme

// A row of a form that is on or off; pressing its text counts too.
Toggle {
    id: row

    height: Math.max(Theme.rowHeight, implicitHeight)
    leftPadding: Theme.spaceL
    rightPadding: Theme.spaceM
    width: parent?.width ?? 0

    RowLine {}
}
