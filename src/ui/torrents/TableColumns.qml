import QtQuick
import Vellum.Theme

// How wide the table's columns are: the title takes what the others leave, and where there is
// plenty the source gets some of it.
QtObject {
    required property int numberHead // what the heads of numbers need
    required property int width

    readonly property int play: 2 * Theme.controlHeight + Theme.spaceXS
    readonly property int number: Math.max(Theme.spaceHuge + Theme.spaceL, numberHead)
    readonly property int size: number + Theme.spaceS
    readonly property int label: number
    readonly property int format: Theme.spaceHuge + Theme.spaceS
    readonly property int source: width > 2 * Theme.sentenceWidth ? Theme.menuWidth : 2 * Theme.spaceHuge
    readonly property int actions: Theme.controlHeight + Theme.spaceS
    readonly property int title: width - play - size - 2 * number - label - format - source - actions
}
