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
    property bool covered: false // something lies over it that takes every press

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

    function snapped(value: double): double {
        const ratio = tiles.devicePixelRatio;
        return Math.round(value * ratio) / ratio;
    }

    AnimatedPoint {
        id: motion
        target: tile.place
        precision: 0.5 / tile.tiles.devicePixelRatio
    }

    Repeater {
        model: tile.highlighted ? 1 : 0

        RoundedShape {
            x: tile.tiles.layout.label.x - 8
            y: -8
            width: tile.tiles.layout.label.width + 16
            height: tile.height + 16
            radius: 18
            fill: Qt.rgba(1, 1, 1, 0.16)
        }
    }

    MergeTarget {
        id: target
        x: tile.tiles.layout.icon.x
        y: tile.tiles.layout.icon.y
        edge: tile.tiles.layout.icon.width
        ratio: tile.tiles.devicePixelRatio
        isOn: tile.mergeTarget
        isFolder: tile.isFolder
    }

    ItemIcon {
        x: tile.snapped(tile.tiles.layout.icon.x + (target.edge - size) / 2)
        y: tile.snapped(tile.tiles.layout.icon.y + (target.edge - size) / 2)
        scale: target.iconScale * target.edge / size
        size: target.paintedEdge
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
