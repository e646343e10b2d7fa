pragma ComponentBehavior: Bound

import QtQuick
import Amberquill.Views

// The open folder's name, to be edited in place.
TextInput {
    id: field
    objectName: "folderTitle"

    required property FolderTiles folder
    required property double ratio // device pixels in a point

    x: Math.round(folder.titleBand.x * ratio) / ratio
    y: Math.round((folder.titleBand.y - height / 2) * ratio) / ratio
    width: folder.titleBand.width
    enabled: folder.isOpen
    color: "white"
    font.pixelSize: 24
    font.weight: Font.DemiBold
    horizontalAlignment: TextInput.AlignHCenter
    clip: true
    selectByMouse: true
    selectionColor: Qt.rgba(1, 1, 1, 0.35)
    selectedTextColor: "white"
    renderType: TextInput.NativeRendering // the same on a GPU and without one

    Accessible.role: Accessible.EditableText
    Accessible.name: folder.title
    Accessible.editable: true
    Accessible.focusable: true

    // A name too long for the field is shown from its beginning, unless it is being edited.
    function showBeginning() {
        if (!activeFocus) {
            cursorPosition = 0;
        }
    }
    onTextChanged: showBeginning()
    onActiveFocusChanged: showBeginning()

    onTextEdited: folder.rename(text)

    Binding {
        target: field
        property: "text"
        value: field.folder.title
    }
}
