pragma ComponentBehavior: Bound

import QtQuick
import Amberquill.Views

// A folder's icon: a translucent body with its first nine applications in rows of three.
Item {
    id: icon

    required property var appPaths
    required property double size
    required property double ratio
    property double brightness: 0

    readonly property double body: size * 0.82
    readonly property double mini: body * 0.28
    readonly property double gap: body * 0.02
    readonly property double inset: (body - 3 * mini - 2 * gap) * 0.5

    width: size
    height: size

    function snapped(value: double): double {
        return Math.round(value * ratio) / ratio;
    }

    function white(opacity: double): color {
        const component = Math.max(0, Math.min(1, 1 + brightness));
        return Qt.rgba(component, component, component, opacity);
    }

    RoundedShape {
        id: slab
        x: icon.snapped((icon.size - icon.body) / 2)
        y: x
        width: icon.snapped(icon.body)
        height: width
        radius: icon.body * 0.225
        fill: icon.white(0.2)
        outline: icon.white(0.22)
        outlineWidth: 1
    }

    Repeater {
        model: icon.appPaths.slice(0, 9)

        AppIconTexture {
            required property string modelData
            required property int index

            x: slab.x + icon.snapped(icon.inset + (index % 3) * (icon.mini + icon.gap))
            y: slab.y + icon.snapped(icon.inset + Math.floor(index / 3) * (icon.mini + icon.gap))
            width: icon.snapped(icon.mini)
            height: width
            path: modelData
            brightness: icon.brightness
        }
    }
}
