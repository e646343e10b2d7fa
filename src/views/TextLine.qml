pragma ComponentBehavior: Bound

import QtQuick
import Amberquill.Views

// An editable line of text.
TextInput {
    id: line

    readonly property double caretWidth: Math.max(1, Math.round(PixelGrid.ratio)) / PixelGrid.ratio

    // The part of the caret's width to the left of the cursor's position: all of it before the text, none after it.
    // Right-to-left text begins at the right.
    readonly property double partBefore: cursorPosition === 0 ? 1 : cursorPosition === length ? 0 : 0.5
    readonly property double partLeft: effectiveHorizontalAlignment === TextInput.AlignRight ? 1 - partBefore : partBefore

    // Room for the caret at both ends of the text. Qt's software renderer clips at whole points.
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

    // Between letters and on whole device pixels. Qt's own caret may vanish between device pixels.
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
