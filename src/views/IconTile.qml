import QtQuick
import Amberquill.Views

// One cell of the grid: an icon above its name.
Item {
    id: tile

    required property string name
    required property string path
    required property var appPaths
    required property bool isFolder
    required property point place
    required property bool pressed
    required property TileModel tiles

    readonly property double brightness: pressed ? -0.3 : 0

    x: motion.value.x
    y: motion.value.y
    width: tiles.layout.size.width
    height: tiles.layout.size.height

    Accessible.role: Accessible.Button
    Accessible.name: name

    AnimatedPoint {
        id: motion
        target: tile.place
        precision: 0.5 / tile.tiles.devicePixelRatio
    }

    ItemIcon {
        x: tile.tiles.layout.icon.x
        y: tile.tiles.layout.icon.y
        size: tile.tiles.layout.icon.width
        ratio: tile.tiles.devicePixelRatio
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
