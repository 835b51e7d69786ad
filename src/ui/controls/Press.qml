pragma Singleton
import QtQuick
import QtQuick.Templates as T

// What Return does to a button: the same as Space, which the templates know alone. A Return that is
// held down presses once: what comes next under the focus is not meant.
QtObject {
    function on(button: T.AbstractButton, event) {
        if (event.isAutoRepeat)
            return;
        if (button.checkable) {
            button.toggle();
            button.toggled();
        }
        if (button.action)
            button.action.trigger();
        else
            button.clicked();
    }
}
