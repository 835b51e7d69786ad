import QtQuick
import Vellum.Player
import Vellum.Theme

// The stream: all there is before its picture, its failure, and a line about it while it plays.
FocusScope {
    id: overlay

    required property StreamModel stream
    readonly property int cornerWidth: corner.visible ? corner.width + Theme.spaceL : 0

    // The focus waits before the first button: a Return that is still held down presses nothing.
    function rest(): void {
        start.focus = true;
    }

    visible: stream.exists

    Item {
        id: start
        focus: true
    }
    StreamProgress {
        objectName: "streamProgress"
        stream: overlay.stream
        visible: overlay.stream.middle === "progress"
        onCancelled: overlay.stream.cancel()
    }
    StreamChoices {
        objectName: "streamChoices"
        stream: overlay.stream
        visible: overlay.stream.middle === "choices"
        onCancelled: overlay.stream.cancel()
    }
    FailureCard {
        canRetry: overlay.stream.canRetry
        objectName: "streamFailure"
        text: overlay.stream.failure
        visible: overlay.stream.middle === "failure"
        onClosed: overlay.stream.cancel()
        onRetried: overlay.stream.retry()
    }
    StreamCorner {
        id: corner

        anchors.margins: Theme.spaceL
        anchors.right: parent.right
        anchors.top: parent.top
        notice: overlay.stream.notice
        text: overlay.stream.corner
        visible: text !== ""
        widest: overlay.width / 2
    }
}
