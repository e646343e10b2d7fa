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

    Animated {
        id: scaling
        target: !target.isOn ? 1 : target.isFolder ? 1.12 : 0.78
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
            x: (target.edge - width) / 2
            y: x
            width: target.edge * 0.95
            height: width
            radius: target.edge * 0.2
            fill: Qt.rgba(1, 1, 1, 0.26)
            opacity: fading.value
        }
    }
}
