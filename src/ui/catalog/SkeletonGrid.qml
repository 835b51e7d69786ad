pragma ComponentBehavior: Bound
import QtQuick
import Vellum.Controls
import Vellum.Theme

// Where the films will be, while they are asked for.
Item {
    id: skeleton

    required property bool gridView
    readonly property int columns: Math.max(1, Math.floor(width / (Theme.posterWidth + 2 * Theme.spaceS)))
    readonly property int cell: Math.floor(width / columns)

    clip: true

    Grid {
        columns: skeleton.gridView ? skeleton.columns : 1
        columnSpacing: 2 * Theme.spaceS
        rowSpacing: Theme.spaceL
        visible: skeleton.gridView
        x: Theme.spaceS
        y: Theme.spaceS

        Repeater {
            model: skeleton.visible && skeleton.gridView ? skeleton.columns * Math.ceil(skeleton.height / (skeleton.cell * Theme.posterShape)) : 0

            delegate: PosterCard {
                loading: true
                width: skeleton.cell - 2 * Theme.spaceS
            }
        }
    }
    Column {
        visible: !skeleton.gridView
        width: parent.width

        Repeater {
            model: skeleton.visible && !skeleton.gridView ? Math.ceil(skeleton.height / (Theme.thumbWidth * Theme.posterShape)) : 0

            delegate: PosterRow {
                loading: true
                width: skeleton.width
            }
        }
    }
}
