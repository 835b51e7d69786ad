import QtQuick
import Vellum.Catalog
import Vellum.Controls

// The films of a list, as posters or as rows; a skeleton while `loading`, and `emptyText` where
// there is nothing.
Item {
    id: grid

    required property bool gridView
    required property MediaList list
    property string emptyIcon: "film"
    property string emptyText
    property bool loading: false
    readonly property bool filled: !loading && list.count > 0

    PosterGrid {
        anchors.fill: parent
        list: grid.list
        model: grid.gridView ? grid.list : null
        objectName: "posterGrid"
        visible: grid.gridView && grid.filled
    }
    PosterTable {
        anchors.fill: parent
        list: grid.list
        model: grid.gridView ? null : grid.list
        objectName: "posterTable"
        visible: !grid.gridView && grid.filled
    }
    SkeletonGrid {
        anchors.fill: parent
        gridView: grid.gridView
        objectName: "gridSkeleton"
        visible: grid.loading
    }
    EmptyState {
        anchors.fill: parent
        icon: grid.emptyIcon
        objectName: "emptyState"
        text: grid.emptyText
        visible: !grid.loading && grid.list.count === 0 && text !== ""
    }
}
