import QtQuick
import QtQuick.Templates as T
import Vellum.Catalog
import Vellum.Controls
import Vellum.Theme

// The page of one item, over the window. Opens when the model has an item to show, closes with it,
// and shows whatever comes while it is open in place of what it had.
Sheet {
    id: sheet

    required property ItemModel model

    bottomPadding: 0
    // Always the same, so that nothing moves when the files come.
    height: Math.min(Theme.itemHeight, (T.Overlay.overlay?.height ?? 0) - 2 * Theme.spaceXXL)
    implicitWidth: Theme.itemWidth
    objectName: "itemSheet"
    title: model.title
    titleShown: list.titlePassed
    topPadding: 0
    visible: model.shown
    // Not when it has closed: what arrives while it fades is shown, and not thrown away.
    onAboutToHide: model.close()

    contentItem: ItemList {
        id: list

        item: sheet.model
    }
}
