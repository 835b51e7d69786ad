import QtQuick
import Vellum.Catalog
import Vellum.Controls
import Vellum.Theme

// What is known of an item, above its files; and what stands in their place.
Column {
    id: header

    required property ItemModel model
    readonly property int titleEnd: topPadding + title.height

    bottomPadding: Theme.spaceM
    spacing: Theme.spaceL
    topPadding: Theme.spaceXS

    Item {
        height: Math.max(poster.height, words.height)
        width: parent.width

        Picture {
            id: poster

            ground: Theme.panel
            height: Math.round(width * Theme.posterShape)
            objectName: "itemPoster"
            radius: Theme.radiusM
            source: header.model.poster
            widest: 2 * Theme.itemPoster
            width: Theme.itemPoster
        }
        Column {
            id: words

            anchors.left: poster.right
            anchors.leftMargin: Theme.spaceXL
            anchors.right: parent.right
            spacing: Theme.spaceM

            Label {
                id: title

                font.pixelSize: Theme.fontTitle
                font.weight: Font.DemiBold
                maximumLineCount: 3
                objectName: "itemTitle"
                text: header.model.title
                width: parent.width
                wrapMode: Text.Wrap
            }
            Label {
                color: Theme.textMuted
                objectName: "itemByline"
                text: header.model.byline
                visible: text !== ""
                width: parent.width
            }
            ItemLicence {
                model: header.model
                width: parent.width
            }
            Link {
                objectName: "itemPageLink"
                text: qsTr("View on Vidarium")
                onClicked: header.model.openItemPage()
            }
            Label {
                color: Theme.textMuted
                lineHeight: 1.25
                objectName: "itemSummary"
                text: header.model.summary
                visible: text !== ""
                width: parent.width
                wrapMode: Text.Wrap
            }
        }
    }
    Separator {
        width: parent.width
    }
    Row {
        objectName: "itemLoading"
        spacing: Theme.spaceS
        visible: header.model.loading

        Spinner {}
        Label {
            color: Theme.textMuted
            height: Theme.iconM
            text: qsTr("Inspecting files…")
        }
    }
    NoteLine {
        color: Theme.bad
        icon: "offline"
        objectName: "itemError"
        text: header.model.errorText
        visible: text !== ""
        width: parent.width
    }
    NoteLine {
        color: Theme.warn
        icon: header.model.restricted ? "lock" : "warning"
        objectName: "itemWarning"
        text: header.model.warning
        visible: text !== ""
        width: parent.width
    }
}
