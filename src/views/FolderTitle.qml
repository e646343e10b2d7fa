pragma ComponentBehavior: Bound

import QtQuick
import Amberquill.Views

// The open folder's name, to be edited in place.
TextInput {
    id: field
    objectName: "folderTitle"

    required property FolderTiles folder

    x: folder.titleBand.x
    y: folder.titleBand.y - height / 2
    width: folder.titleBand.width
    opacity: fade.value
    visible: opacity > 0
    enabled: folder.isOpen
    color: "white"
    font.pixelSize: 24
    font.weight: Font.DemiBold
    horizontalAlignment: TextInput.AlignHCenter
    clip: true
    selectByMouse: true
    selectionColor: Qt.rgba(1, 1, 1, 0.35)
    selectedTextColor: "white"

    Accessible.role: Accessible.EditableText
    Accessible.name: folder.title

    onTextEdited: folder.rename(text)

    Binding {
        target: field
        property: "text"
        value: field.folder.title
    }

    Animated {
        id: fade
        target: field.folder.isOpen ? 1 : 0
        isFade: true
    }
}
