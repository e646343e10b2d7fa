pragma ComponentBehavior: Bound

import QtQuick
import Amberquill.Views

// Shows on a tile that what is dragged would be dropped into it: an application shrinks into the outline of the
// folder to be, a folder swells.
Item {
    id: target

    required property double edge // points
    required property bool isOn
    required property bool isFolder

    readonly property double iconScale: scaling.value

    // What the icon is painted at, in points: a swollen one as large as it is drawn, so that it is sharp there.
    readonly property double paintedEdge: isOn && isFolder ? PixelGrid.snapped(edge * swollen) : edge

    readonly property double swollen: 1.12

    Animated {
        id: scaling
        target: !target.isOn ? 1 : target.isFolder ? target.swollen : 0.78
        precision: 0.5 / (target.edge * PixelGrid.ratio)
    }

    Animated {
        id: fading
        target: target.isOn && !target.isFolder ? 1 : 0
        isFade: true
    }

    OptionalItem {
        isNeeded: fading.value > 0

        RoundedShape {
            x: PixelGrid.snapped((target.edge - width) / 2)
            y: x
            width: PixelGrid.snapped(target.edge * 0.95)
            height: width
            radius: target.edge * Theme.mergeTargetRadius
            fill: Theme.mergeTarget
            opacity: fading.value
        }
    }
}
