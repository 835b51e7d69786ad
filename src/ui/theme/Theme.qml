pragma Singleton
import QtQuick

// Every colour, size and duration of the user interface. Sizes are in points, durations in
// milliseconds; no other QML file has a literal of either.
QtObject {
    // Three depths, from the ground up: the window, what lies on it, what floats above that.
    readonly property color background: "#0d0e12"
    readonly property color panel: "#15171c"
    readonly property color raised: "#20232b"

    readonly property color accent: "#a9a4ff"
    readonly property color accentInk: "#12111f"

    readonly property color text: "#f3f3f6"
    readonly property color textMuted: "#a8acb8"
    readonly property color textFaint: "#7d8290"

    readonly property color good: "#63cf93"
    readonly property color warn: "#f0b55e"
    readonly property color bad: "#ff7a72"
    readonly property color badInk: "#22090a"

    readonly property color clear: "transparent"
    readonly property color video: "#000000"
    readonly property color shade: "#a6000000"
    readonly property color hairline: "#17ffffff"
    readonly property color track: "#2bffffff"
    readonly property color buffered: "#4dffffff"

    // Over a film, which may be of any colour.
    readonly property color caption: "#ffffff"
    readonly property color captionShade: "#99000000"
    readonly property color controlsShade: "#e6000000"

    // What lies over a control while the pointer is on it or presses it, or behind a tinted one.
    readonly property real hoverStrength: 0.06
    readonly property real pressStrength: 0.12
    readonly property real tintStrength: 0.14
    readonly property real disabledStrength: 0.4

    readonly property int spaceXS: 4
    readonly property int spaceS: 8
    readonly property int spaceM: 12
    readonly property int spaceL: 16
    readonly property int spaceXL: 24
    readonly property int spaceXXL: 32
    readonly property int spaceHuge: 48

    readonly property int radiusS: 4
    readonly property int radiusM: 8
    readonly property int radiusL: 14

    // Said by each control, for the templates would take the platform's.
    readonly property string family: Application.font.family
    readonly property string familyMono: Qt.platform.os === "osx" ? "Menlo" : "monospace"
    readonly property int fontSmall: 11
    readonly property int fontBody: 13
    readonly property int fontHeading: 16
    readonly property int fontTitle: 22
    readonly property int fontDisplay: 32

    readonly property int iconS: 14
    readonly property int iconM: 20
    readonly property int iconL: 24
    readonly property int iconHuge: 44

    readonly property int windowNarrowest: 980
    readonly property int windowLowest: 640
    readonly property int windowWidth: 1240
    readonly property int windowHeight: 800
    readonly property int sidebarNarrowest: 170
    readonly property int sidebarWidth: 190
    readonly property int sidebarWidest: 240

    readonly property int hairlineWidth: 1
    readonly property int focusWidth: 2
    readonly property int controlHeight: 32
    readonly property int chipHeight: 28
    readonly property int rowHeight: 44
    readonly property int barHeight: 4
    readonly property int handleSize: 14
    readonly property int toggleWidth: 38
    readonly property int toggleHeight: 22
    readonly property int fieldWidth: 240
    readonly property int stepperWidth: 132
    readonly property int sliderWidth: 160
    readonly property int menuWidth: 200
    readonly property int menuWidest: 420
    readonly property int tipWidest: 360
    readonly property int alertWidth: 400
    readonly property int sheetWidth: 640
    readonly property int sentenceWidth: 420
    readonly property int formWidth: 860
    readonly property int editorHighest: 160
    readonly property int posterWidth: 148
    readonly property real posterShape: 1.5 // height over width
    readonly property int shelfTexts: 64 // under a poster: two lines and a subtitle
    readonly property int thumbWidth: 44
    readonly property int itemPoster: 208
    readonly property int itemWidth: 800
    readonly property int itemHeight: 760
    readonly property int volumeWidth: 90
    readonly property int choicesWidth: 460
    readonly property int choicesHeight: 220
    readonly property int stageDot: 7
    readonly property int miniWidth: 128
    readonly property int miniHeight: 72
    readonly property int miniRadius: 6
    readonly property int miniInset: 10
    readonly property int scrollBarWidth: 8
    readonly property int scrollBarShortest: 32

    readonly property int motionFast: 120
    readonly property int motion: 160
    readonly property int motionSlow: 200
    readonly property int easing: Easing.OutCubic
    readonly property int easingBoth: Easing.InOutQuad
    readonly property int controlsStay: 3000
    readonly property int tipDelay: 600
    readonly property int turn: 1000 // of a spinner, and the breath of a skeleton

    function tint(of: color): color {
        return Qt.rgba(of.r, of.g, of.b, tintStrength);
    }
}
