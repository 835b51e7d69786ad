import QtQuick
import Vellum.Player

// The keys of the player screen, wherever the focus is on it; a menu or a question over it keeps
// them to itself.
Item {
    id: keys

    required property PlayerModel model

    signal fullScreenWanted

    readonly property real volumeStep: 0.1
    readonly property int skipSeconds: 10

    Shortcut {
        autoRepeat: false
        enabled: keys.visible
        sequence: "Space"
        onActivated: keys.model.toggle()
    }
    Shortcut {
        enabled: keys.visible
        sequence: "Left"
        onActivated: keys.model.skip(-keys.skipSeconds)
    }
    Shortcut {
        enabled: keys.visible
        sequence: "Right"
        onActivated: keys.model.skip(keys.skipSeconds)
    }
    Shortcut {
        enabled: keys.visible
        sequence: "Up"
        onActivated: keys.model.player.adjustVolume(keys.volumeStep)
    }
    Shortcut {
        enabled: keys.visible
        sequence: "Down"
        onActivated: keys.model.player.adjustVolume(-keys.volumeStep)
    }
    Shortcut {
        autoRepeat: false
        enabled: keys.visible
        sequence: "M"
        onActivated: keys.model.toggleMuted()
    }
    Shortcut {
        autoRepeat: false
        enabled: keys.visible
        sequence: "F"
        onActivated: keys.fullScreenWanted()
    }
    Shortcut {
        autoRepeat: false
        enabled: keys.visible
        sequence: "Escape"
        onActivated: keys.model.goBack()
    }
}
