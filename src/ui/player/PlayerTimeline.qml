import QtQuick
import Vellum.Controls
import Vellum.Player
import Vellum.Theme

// Where the film is, and where a finger on the slider would have it.
Item {
    id: timeline

    required property PlayerModel model
    // Seconds, while the slider is dragged; the player is not asked before the drag ends.
    property var scrub: null
    readonly property real shown: scrub ?? model.player.currentTime

    implicitHeight: slider.implicitHeight

    Label {
        id: elapsed

        anchors.left: parent.left
        anchors.verticalCenter: parent.verticalCenter
        horizontalAlignment: Text.AlignRight
        objectName: "elapsedTime"
        text: timeline.model.timeText(timeline.shown)
        // As wide as it will become, so that the slider stays where it is.
        width: Math.max(implicitWidth, total.implicitWidth)
    }
    Slider {
        id: slider

        anchors.left: elapsed.right
        anchors.margins: Theme.spaceM
        anchors.right: total.left
        anchors.verticalCenter: parent.verticalCenter
        bufferedFrom: timeline.model.player.currentTime
        bufferedTo: timeline.model.player.bufferedTo
        name: qsTr("Time")
        objectName: "timeSlider"
        to: timeline.model.player.duration > 0 ? timeline.model.player.duration : 1
        value: Math.min(to, timeline.shown)
        onMoved: timeline.scrub = value
        onPressedChanged: {
            if (pressed || timeline.scrub === null)
                return;
            timeline.model.player.seek(timeline.scrub);
            timeline.scrub = null;
        }
    }
    Label {
        id: total

        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        objectName: "totalTime"
        text: timeline.model.timeText(timeline.model.player.duration)
    }
}
