pragma ComponentBehavior: Bound

import QtQuick
import Amberquill.Views

// A line of text to be edited.
TextInput {
    id: line

    required property double ratio // device pixels in a point

    readonly property double caretWidth: Math.max(1, Math.round(ratio)) / ratio

    // How much of the caret is left of where it stands: all of it before the text, nothing after it. Text from right to
    // left begins at its right.
    readonly property double partBefore: cursorPosition === 0 ? 1 : cursorPosition === length ? 0 : 0.5
    readonly property double partLeft: effectiveHorizontalAlignment === TextInput.AlignRight ? 1 - partBefore : partBefore

    function snapped(value: double): double {
        return Math.round(value * ratio) / ratio;
    }

    // Room for the caret beside the text at either end. Qt's software renderer clips at whole points.
    padding: snapped(2)
    color: "white"
    clip: true
    selectByMouse: true
    selectionColor: Qt.rgba(1, 1, 1, 0.35)
    selectedTextColor: "white"
    renderType: TextInput.NativeRendering // the same on a GPU and without one

    Accessible.role: Accessible.EditableText
    Accessible.editable: true
    Accessible.focusable: true

    // Between letters, not upon one, and on whole device pixels: Qt's own gets lost between them.
    cursorDelegate: Item {
        id: caret
        visible: line.cursorVisible

        RoundedShape {
            x: line.snapped(caret.x - line.caretWidth * line.partLeft) - caret.x
            y: line.snapped(caret.y) - caret.y
            width: line.caretWidth
            height: line.snapped(caret.height)
            fill: line.color
        }
    }
}
