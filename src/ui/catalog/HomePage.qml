import QtQuick
import QtQuick.Templates as T
import Vellum.Catalog
import Vellum.Controls
import Vellum.Theme

// The home screen: what goes on, what the catalog offers, what was seen, what is on this disk.
Flickable {
    id: page

    required property HomeModel model

    // Brings into view what the keyboard has come to.
    function reveal(shelf: Item) {
        const most = Math.max(0, contentHeight - height);
        const low = shelf.y + shelf.height - height;
        contentY = Math.min(most, Math.max(low, Math.min(contentY, shelf.y), 0));
    }

    boundsBehavior: Flickable.StopAtBounds
    clip: true
    contentHeight: shelves.height
    objectName: "homePage"
    Accessible.name: qsTr("Home")
    Accessible.role: Accessible.Pane
    Component.onCompleted: model.load()

    T.ScrollBar.vertical: ScrollBar {}

    FocusFollow {
        view: page
    }
    Column {
        id: shelves

        // What has a ring when the keyboard is on it stands this far inside.
        leftPadding: Theme.spaceL - Theme.spaceS
        padding: Theme.spaceL
        rightPadding: 0 // the shelves go on beyond the edge
        spacing: Theme.spaceM
        width: page.width

        readonly property int room: width - leftPadding

        Label {
            font.pixelSize: Theme.fontTitle
            font.weight: Font.DemiBold
            leftPadding: Theme.spaceS
            text: qsTr("Home")
            width: shelves.room
        }
        Shelf {
            list: page.model.continueWatching
            objectName: "continueWatching"
            title: qsTr("Continue Watching")
            width: shelves.room
            onWalkingChanged: if (walking)
                page.reveal(this)
        }
        Column {
            id: suggestions

            visible: page.model.loading || page.model.suggestions.length > 0
            width: shelves.room

            Label {
                font.pixelSize: Theme.fontHeading
                font.weight: Font.Medium
                height: Theme.rowHeight
                leftPadding: Theme.spaceS
                text: qsTr("Search Suggestions")
                width: parent.width
            }
            ChipRow {
                loading: page.model.suggestions.length === 0
                objectName: "suggestions"
                width: parent.width
                words: page.model.suggestions
                onPicked: word => page.model.searchFor(word)
            }
        }
        EmptyState {
            action: qsTr("Retry")
            height: implicitHeight + 2 * Theme.spaceHuge
            icon: "offline"
            objectName: "homeError"
            text: page.model.errorText
            visible: text !== ""
            width: shelves.room
            onTriggered: page.model.load()
        }
        EmptyState {
            height: implicitHeight + 2 * Theme.spaceHuge
            icon: "film"
            objectName: "homeEmpty"
            text: qsTr("The catalog has nothing to show right now.")
            visible: page.model.empty
            width: shelves.room
        }
        Shelf {
            list: page.model.featured
            loading: page.model.loading
            objectName: "featured"
            title: loading ? qsTr("Loading catalog…") : qsTr("Featured Public-Domain Films")
            width: shelves.room
            onWalkingChanged: if (walking)
                page.reveal(this)
        }
        Shelf {
            list: page.model.popular
            objectName: "popular"
            title: qsTr("Popular on Vidarium This Week")
            width: shelves.room
            onWalkingChanged: if (walking)
                page.reveal(this)
        }
        Shelf {
            list: page.model.recentlyViewed
            objectName: "recentlyViewed"
            title: qsTr("Recently Viewed")
            width: shelves.room
            onWalkingChanged: if (walking)
                page.reveal(this)
        }
        Shelf {
            list: page.model.local
            objectName: "localContent"
            title: qsTr("Recently Added Local Content")
            width: shelves.room
            onWalkingChanged: if (walking)
                page.reveal(this)
        }
    }
}
