pragma ComponentBehavior: Bound

import QtQuick
import Amberquill.Views

// A folder's icon: a translucent body with its first nine applications in rows of three.
Item {
    id: icon

    required property var appPaths
    required property double size
    property double brightness: 0

    readonly property double body: size * Theme.folderBody
    readonly property double mini: body * 0.28
    readonly property double gap: body * 0.02
    readonly property double inset: (body - 3 * mini - 2 * gap) * 0.5

    width: size
    height: size

    RoundedShape {
        id: slab
        x: PixelGrid.snapped((icon.size - icon.body) / 2)
        y: x
        width: PixelGrid.snapped(icon.body)
        height: width
        radius: icon.body * Theme.folderRadius
        fill: Theme.folderFill
        outline: Theme.folderOutline
        outlineWidth: Theme.outlineWidth
        brightness: icon.brightness
    }

    Repeater {
        model: icon.appPaths.slice(0, 9)

        AppIconTexture {
            required property string modelData
            required property int index

            x: slab.x + PixelGrid.snapped(icon.inset + (index % 3) * (icon.mini + icon.gap))
            y: slab.y + PixelGrid.snapped(icon.inset + Math.floor(index / 3) * (icon.mini + icon.gap))
            width: PixelGrid.snapped(icon.mini)
            height: width
            path: modelData
            brightness: icon.brightness
        }
    }
}
