pragma ComponentBehavior: Bound

import QtQuick
import Amberquill.Views

// The open folder: a frosted slab with the folder's applications in a grid of their own.
Item {
    id: panel

    required property FolderTiles folder
    required property LauncherModel launcher
    required property BackgroundLayer background
    required property ViewTexts texts

    // The opacity of the page behind the panel.
    readonly property double dimming: 0.2

    readonly property bool isVisible: opening.value > 0

    visible: isVisible
    opacity: opening.value

    transform: Scale {
        origin.x: panel.folder.panelRect.x + panel.folder.panelRect.width / 2
        origin.y: panel.folder.panelRect.y + panel.folder.panelRect.height / 2
        xScale: growth.value
        yScale: growth.value
    }

    Animated {
        id: opening
        target: panel.folder.isOpen ? 1 : 0
        isFade: true
    }

    Animated {
        id: growth
        target: panel.folder.isOpen ? 1 : 0.92
        precision: 0.5 / Math.max(panel.folder.panelRect.width, 1)
    }

    FrostedSlab {
        x: panel.folder.panelRect.x
        y: panel.folder.panelRect.y
        width: panel.folder.panelRect.width
        height: panel.folder.panelRect.height
        launcher: panel.launcher
        background: panel.background
        dimming: panel.dimming
        isShown: panel.isVisible
        radius: Theme.panelRadius
    }

    Repeater {
        model: panel.folder

        IconTile {
            tiles: panel.folder
            onActivated: id => panel.launcher.activate(id)
        }
    }

    Text {
        x: PixelGrid.snapped(panel.folder.panelRect.x + (panel.folder.panelRect.width - width) / 2)
        y: PixelGrid.snapped(panel.folder.panelRect.y + (panel.folder.panelRect.height - height) / 2)
        visible: panel.folder.isEmpty
        color: Theme.emptyFolderText
        font.pixelSize: Theme.emptyFolderTextSize
        text: panel.texts.emptyFolder
        textFormat: Text.PlainText
        renderType: Text.NativeRendering
    }
}
