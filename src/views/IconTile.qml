pragma ComponentBehavior: Bound

import QtQuick
import Amberquill.Views

// One cell of the grid or of a folder: an icon above its name.
Item {
    id: tile

    required property string itemId
    required property string name
    required property string spokenName
    required property string path
    required property var appPaths
    required property bool isFolder
    required property point place
    required property bool pressed
    required property bool mergeTarget
    required property bool highlighted
    required property bool dragged
    required property TileRows tiles
    property bool covered: false // an open folder lies over the tile and takes every press

    readonly property double brightness: pressed ? -0.3 : 0

    signal activated(id: string)

    x: motion.value.x
    y: motion.value.y
    width: tiles.layout.size.width
    height: tiles.layout.size.height
    opacity: dragged ? 0 : 1

    Accessible.role: Accessible.Button
    Accessible.name: spokenName
    Accessible.ignored: dragged || covered
    Accessible.pressed: pressed
    Accessible.selected: highlighted
    Accessible.onPressAction: {
        if (enabled)
            activated(itemId);
    }

    AnimatedPoint {
        id: motion
        target: tile.place
        precision: 0.5 / PixelGrid.ratio
    }

    OptionalItem {
        isNeeded: tile.highlighted

        RoundedShape {
            x: tile.tiles.layout.label.x - 8
            y: -8
            width: tile.tiles.layout.label.width + 16
            height: tile.height + 16
            radius: Theme.highlightRadius
            fill: Theme.highlight
        }
    }

    MergeTarget {
        id: target
        x: tile.tiles.layout.icon.x
        y: tile.tiles.layout.icon.y
        edge: tile.tiles.layout.icon.width
        isOn: tile.mergeTarget
        isFolder: tile.isFolder
    }

    ItemIcon {
        x: PixelGrid.snapped(tile.tiles.layout.icon.x + (target.edge - size) / 2)
        y: PixelGrid.snapped(tile.tiles.layout.icon.y + (target.edge - size) / 2)
        scale: target.iconScale * target.edge / size
        size: target.paintedEdge
        isFolder: tile.isFolder
        path: tile.path
        appPaths: tile.appPaths
        brightness: tile.brightness
    }

    LabelTexture {
        x: tile.tiles.layout.label.x
        y: tile.tiles.layout.label.y
        width: tile.tiles.layout.label.width
        height: tile.tiles.layout.label.height
        text: tile.name
        fontSize: tile.tiles.layout.fontSize
        brightness: tile.brightness
    }
}
