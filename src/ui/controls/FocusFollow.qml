import QtQuick
import Vellum.Theme

// Brings into the sight of `view` what the keyboard reaches in it.
Item {
    required property Flickable view
    readonly property Item focused: Window.activeFocusItem

    signal followed

    onFocusedChanged: {
        let inside = focused;
        while (inside && inside !== view.contentItem)
            inside = inside.parent;
        if (!inside)
            return;
        const top = focused.mapToItem(view.contentItem, 0, 0).y - Theme.spaceM;
        const bottom = top + focused.height + 2 * Theme.spaceM;
        view.contentY = Math.max(view.originY, Math.min(Math.max(view.contentY, bottom - view.height), top));
        followed();
    }
}
