import QtQuick
import QtQuick.Templates as T
import Vellum.Theme

// Several lines of plain text to type; grows with them to `highest`, then scrolls. Tab leaves it.
Flickable {
    id: editor

    property int highest: Theme.editorHighest
    property string name
    property alias text: area.text

    boundsBehavior: Flickable.StopAtBounds
    clip: true
    implicitHeight: Math.min(highest, Math.max(area.implicitHeight, Theme.controlHeight + 2 * Theme.fontHeading))
    implicitWidth: Theme.fieldWidth

    T.ScrollBar.vertical: ScrollBar {}
    T.TextArea.flickable: T.TextArea {
        id: area

        bottomPadding: Theme.spaceS
        color: enabled ? Theme.text : Theme.textFaint
        font.family: Theme.family
        font.pixelSize: Theme.fontBody
        implicitHeight: contentHeight + topPadding + bottomPadding
        leftPadding: Theme.spaceM
        rightPadding: Theme.spaceM
        selectByMouse: true
        selectedTextColor: Theme.accentInk
        selectionColor: Theme.accent
        textFormat: TextEdit.PlainText
        topPadding: Theme.spaceS
        wrapMode: TextEdit.Wrap
        Accessible.multiLine: true
        Accessible.name: editor.name
        Accessible.role: Accessible.EditableText
        Keys.onBacktabPressed: nextItemInFocusChain(false).forceActiveFocus(Qt.BacktabFocusReason)
        Keys.onTabPressed: nextItemInFocusChain(true).forceActiveFocus(Qt.TabFocusReason)

        // qmllint disable unqualified
        cursorDelegate: TextCursor {
            position: area.cursorPosition
            shown: area.cursorVisible
        }
        // qmllint enable unqualified
        background: Rectangle {
            border.color: area.activeFocus ? Theme.accent : Theme.hairline
            border.width: area.activeFocus ? Theme.focusWidth : Theme.hairlineWidth
            color: area.hovered && !area.activeFocus ? Theme.raised : Theme.panel
            opacity: area.enabled ? 1 : Theme.disabledStrength
            radius: Theme.radiusM
        }
    }
}
