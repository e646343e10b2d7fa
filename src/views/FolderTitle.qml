pragma ComponentBehavior: Bound

import QtQuick
import Amberquill.Views

// The open folder's name, to be edited in place.
TextLine {
    id: field
    objectName: "folderTitle"

    required property FolderTiles folder

    x: PixelGrid.snapped(folder.titleBand.x)
    y: PixelGrid.snapped(folder.titleBand.y - height / 2)
    width: folder.titleBand.width
    enabled: folder.isOpen
    font.pixelSize: Theme.folderTitleSize
    font.weight: Font.DemiBold
    horizontalAlignment: TextInput.AlignHCenter

    Accessible.name: folder.title

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
