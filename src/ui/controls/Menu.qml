import QtQuick
import QtQuick.Templates as T
import QtQuick.Window
import Vellum.Theme

// Choices that float over the window; arrows walk, Return chooses, Escape closes.
T.Menu {
    id: menu

    readonly property FocusReturn focusReturn: FocusReturn {
        popup: menu
    }
    // As wide as its widest entry, within reason.
    readonly property int widest: {
        let found = Theme.menuWidth;
        for (let i = 0; i < count; ++i)
            found = Math.max(found, itemAt(i)?.implicitWidth ?? 0);
        return Math.min(Math.ceil(found), Theme.menuWidest);
    }

    implicitHeight: contentHeight + topPadding + bottomPadding
    implicitWidth: widest + leftPadding + rightPadding
    margins: Theme.spaceS
    overlap: Theme.hairlineWidth
    padding: Theme.spaceXS

    // No binding: an entry that is highlighted here takes the focus, which the menu follows.
    onCurrentIndexChanged: list.currentIndex = currentIndex

    delegate: MenuItem {}

    background: Rectangle {
        border.color: Theme.hairline
        border.width: Theme.hairlineWidth
        color: Theme.raised
        radius: Theme.radiusM
    }
    contentItem: ListView {
        id: list

        Accessible.role: Accessible.PopupMenu
        clip: contentHeight > height
        currentIndex: -1
        implicitHeight: contentHeight
        interactive: contentHeight > height
        model: menu.contentModel

        T.ScrollBar.vertical: ScrollBar {}
    }
    enter: Fade {}
    exit: Fade {
        out: true
    }
}
