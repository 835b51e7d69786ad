pragma Singleton
import QtQuick
import QtQuick.Templates as T

// What Return does to a button: the same as Space, which the templates know alone.
QtObject {
    function on(button: T.AbstractButton) {
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
