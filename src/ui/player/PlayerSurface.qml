import QtQuick
import Vellum.Player

// What a click on the picture does. The first click of two works at once, and the second takes it
// back: nobody waits for a pause, and a double click leaves the film as it was.
MouseArea {
    id: surface

    required property PlayerModel model
    property bool pointerShown: true

    signal fullScreenWanted

    cursorShape: pointerShown ? Qt.ArrowCursor : Qt.BlankCursor
    onClicked: model.toggle()
    onDoubleClicked: {
        model.toggle();
        fullScreenWanted();
    }
}
