pragma ComponentBehavior: Bound

import QtQuick
import Amberquill.Views

// A line of text to be edited.
TextInput {
    id: line

    readonly property double caretWidth: Math.max(1, Math.round(PixelGrid.ratio)) / PixelGrid.ratio

    // How much of the caret is left of where it stands: all of it before the text, nothing after it. Text from right to
    // left begins at its right.
    readonly property double partBefore: cursorPosition === 0 ? 1 : cursorPosition === length ? 0 : 0.5
    readonly property double partLeft: effectiveHorizontalAlignment === TextInput.AlignRight ? 1 - partBefore : partBefore

    // Room for the caret beside the text at either end. Qt's software renderer clips at whole points.
    padding: PixelGrid.snapped(2)
    color: Theme.text
    clip: true
    selectByMouse: true
    selectionColor: Theme.selection
    selectedTextColor: Theme.text
    renderType: TextInput.NativeRendering // the same on a GPU and without one

    Accessible.role: Accessible.EditableText
    Accessible.editable: true
    Accessible.focusable: true

    // Between letters, not upon one, and on whole device pixels: Qt's own gets lost between them.
    cursorDelegate: Item {
        id: caret
        visible: line.cursorVisible

        RoundedShape {
            x: PixelGrid.snapped(caret.x - line.caretWidth * line.partLeft) - caret.x
            y: PixelGrid.snapped(caret.y) - caret.y
            width: line.caretWidth
            height: PixelGrid.snapped(caret.height)
            fill: line.color
        }
    }
}
