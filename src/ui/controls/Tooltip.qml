import QtQuick
import QtQuick.Templates as T
import Vellum.Theme

// A sentence about the control that it stands under; wraps when it is long.
T.ToolTip {
    id: tip

    closePolicy: T.Popup.CloseOnEscape | T.Popup.CloseOnPressOutsideParent | T.Popup.CloseOnReleaseOutsideParent
    delay: Theme.tipDelay
    implicitHeight: contentHeight + topPadding + bottomPadding
    implicitWidth: contentWidth + leftPadding + rightPadding
    contentWidth: Math.min(words.implicitWidth, Theme.tipWidest)
    horizontalPadding: Theme.spaceS
    margins: Theme.spaceS
    verticalPadding: Theme.spaceXS
    x: parent ? (parent.width - width) / 2 : 0
    y: parent ? parent.height + Theme.spaceXS : 0

    background: Rectangle {
        border.color: Theme.hairline
        border.width: Theme.hairlineWidth
        color: Theme.raised
        radius: Theme.radiusS
    }
    contentItem: Text {
        id: words

        color: Theme.text
        font.family: Theme.family
        font.pixelSize: Theme.fontSmall
        text: tip.text
        textFormat: Text.PlainText
        wrapMode: Text.Wrap
    }
    enter: Transition {
        NumberAnimation {
            duration: Theme.motionFast
            easing.type: Theme.easing
            from: 0
            property: "opacity"
            to: 1
        }
    }
}
