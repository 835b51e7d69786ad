import QtQuick
import Vellum.Icons
import Vellum.Theme

// A drawing of the set at `size` points. Says nothing to a screen reader: its control does.
IconShape {
    property real size: Theme.iconM

    color: Theme.text
    implicitHeight: size
    implicitWidth: size
    opacity: enabled ? 1 : Theme.disabledStrength
    Accessible.ignored: true
}
