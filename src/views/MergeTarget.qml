pragma ComponentBehavior: Bound

import QtQuick
import Amberquill.Views

// Marks a tile that a drop would go into: an application shrinks into the outline of the new folder, a folder grows.
Item {
    id: target

    required property double edge // points
    required property bool isOn
    required property bool isFolder

    readonly property double iconScale: scaling.value

    // The edge that the icon is painted with, in points. A grown folder is painted as large as it is drawn, to be sharp.
    readonly property double paintedEdge: isOn && isFolder ? PixelGrid.snapped(edge * grown) : edge

    readonly property double grown: 1.12

    Animated {
        id: scaling
        target: !target.isOn ? 1 : target.isFolder ? target.grown : 0.78
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
