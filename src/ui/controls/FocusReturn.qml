import QtQuick
import QtQuick.Templates as T
import QtQuick.Window

// Gives the focus back to what had it before `popup` was shown, unless it is somewhere else by then:
// otherwise the Tab key would begin anew at the window's first control.
Connections {
    id: keeper

    required property T.Popup popup
    property Item before: null
    property int reason: Qt.OtherFocusReason

    function onAboutToShow() {
        before = popup.parent?.Window.activeFocusItem ?? null;
        reason = (before as T.Control)?.focusReason ?? Qt.OtherFocusReason;
    }
    function onClosed() {
        const window = before?.Window.window ?? null;
        if (window && window.activeFocusItem === window.contentItem && before.visible)
            before.forceActiveFocus(reason);
    }

    target: popup
}
