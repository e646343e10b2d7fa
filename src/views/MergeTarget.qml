pragma ComponentBehavior: Bound

import QtQuick
import Amberquill.Views

// Shows on a tile that what is dragged would be dropped into it: an application shrinks into the outline of the
// folder to be, a folder swells.
Item {
    id: target

    required property double edge // points
    required property double ratio // device pixels in a point
    required property bool isOn
    required property bool isFolder

    readonly property double iconScale: scaling.value

    // What the icon is painted at, in points: a swollen one as large as it is drawn, so that it is sharp there.
    readonly property double paintedEdge: isOn && isFolder ? Math.round(edge * swollen * ratio) / ratio : edge

    readonly property double swollen: 1.12

    Animated {
        id: scaling
        target: !target.isOn ? 1 : target.isFolder ? target.swollen : 0.78
        precision: 0.5 / (target.edge * target.ratio)
    }

    Animated {
        id: fading
        target: target.isOn && !target.isFolder ? 1 : 0
        isFade: true
    }

    Repeater {
        model: fading.value > 0 ? 1 : 0

        RoundedShape {
            x: Math.round((target.edge - width) / 2 * target.ratio) / target.ratio
            y: x
            width: Math.round(target.edge * 0.95 * target.ratio) / target.ratio
            height: width
            radius: target.edge * 0.2
            fill: Qt.rgba(1, 1, 1, 0.26)
            opacity: fading.value
        }
    }
}
