import QtQuick
import QtQuick.Templates as T
import QtQuick.Window
import Vellum.Controls
import Vellum.Player
import Vellum.Theme
import Vellum.Video

// What plays, over all of the window's page. Its controls go away while the film runs and the
// pointer rests.
FocusScope {
    id: screen

    required property PlayerModel model
    // At first the controls stay until the pointer has moved and then rested.
    property bool showControls: true
    readonly property bool controlsShown: showControls || !model.player.isPlaying || controls.hasOpenMenu
    readonly property Item focused: Window.activeFocusItem

    signal fullScreenWanted
    signal menuWanted // where the pointer is
    signal subtitleFileWanted

    function poke(): void {
        showControls = true;
        hideTimer.restart();
    }

    objectName: "playerScreen"
    Component.onCompleted: forceActiveFocus()
    // Nobody walks with Tab through what cannot be seen.
    onFocusedChanged: {
        if ((focused as T.Control)?.visualFocus && (!showControls || hideTimer.running))
            poke();
    }

    Timer {
        id: hideTimer

        interval: Theme.controlsStay
        objectName: "hideTimer"
        onTriggered: screen.showControls = false
    }
    Rectangle {
        anchors.fill: parent
        color: Theme.video
    }
    VideoPicture {
        anchors.fill: parent
        objectName: "playerPicture"
        player: screen.model.player
    }
    PlayerShades {
        anchors.fill: parent
        bottomHeight: controls.height
        opacity: bars.opacity
        topHeight: topBar.height
    }
    PlayerSurface {
        anchors.fill: parent
        model: screen.model
        objectName: "playerSurface"
        pointerShown: screen.controlsShown
        onFullScreenWanted: screen.fullScreenWanted()
    }
    PlayerKeys {
        id: keys

        focus: true
        model: screen.model
        onFullScreenWanted: screen.fullScreenWanted()
    }
    SubtitleOverlay {
        anchors.bottomMargin: screen.controlsShown ? controls.height : Theme.spaceXXL
        anchors.fill: parent
        text: screen.model.subtitleText

        Behavior on anchors.bottomMargin {
            NumberAnimation {
                duration: Theme.motionSlow
                easing.type: Theme.easingBoth
            }
        }
    }
    Spinner {
        anchors.centerIn: parent
        objectName: "playerSpinner"
        running: visible
        size: Theme.iconHuge
        visible: screen.model.isWaiting
    }
    StreamOverlay {
        id: overlay

        readonly property string middle: stream.middle

        // What appears in the middle has the focus, and what goes gives it back.
        function settle(): void {
            rest();
            (middle !== "" ? overlay : keys).focus = true;
        }

        anchors.fill: parent
        stream: screen.model.stream
        Component.onCompleted: settle()
        onMiddleChanged: settle()
    }
    FailureCard {
        heading: qsTr("Playback error")
        objectName: "errorCard"
        text: screen.model.error
        visible: text !== ""
        onClosed: screen.model.stream.close()
        onRetried: screen.model.retry()
    }
    Item {
        id: bars

        anchors.fill: parent
        objectName: "playerControls"
        opacity: screen.controlsShown ? 1 : 0

        Behavior on opacity {
            NumberAnimation {
                duration: Theme.motionSlow
                easing.type: Theme.easingBoth
            }
        }

        PlayerTopBar {
            id: topBar

            anchors.left: parent.left
            anchors.right: parent.right
            anchors.top: parent.top
            model: screen.model
            rightInset: overlay.cornerWidth
        }
        PlayerControls {
            id: controls

            anchors.bottom: parent.bottom
            anchors.left: parent.left
            anchors.right: parent.right
            model: screen.model
            onFullScreenWanted: screen.fullScreenWanted()
            onSubtitleFileWanted: screen.subtitleFileWanted()
        }
    }
    TapHandler {
        acceptedButtons: Qt.RightButton
        onTapped: screen.menuWanted()
    }
    // What cannot be seen cannot be pressed.
    PlayerSurface {
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: parent.top
        height: topBar.height
        model: screen.model
        pointerShown: false
        visible: !screen.controlsShown
        onFullScreenWanted: screen.fullScreenWanted()
    }
    PlayerSurface {
        anchors.bottom: parent.bottom
        anchors.left: parent.left
        anchors.right: parent.right
        height: controls.height
        model: screen.model
        pointerShown: false
        visible: !screen.controlsShown
        onFullScreenWanted: screen.fullScreenWanted()
    }
    PointerWatch {
        anchors.fill: parent
        onMoved: screen.poke()
    }
}
