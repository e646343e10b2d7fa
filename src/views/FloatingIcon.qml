import QtQuick
import Amberquill.Views

// The icon that follows the pointer during a drag, and glides into its place when it is dropped.
Item {
    id: icon

    required property DragView drag
    required property double iconEdge // on the page, in points

    // Painted as large as it is while it is dragged, so that it is sharp then.
    readonly property double held: PixelGrid.snapped(iconEdge * 1.1)

    x: PixelGrid.snapped(place.value.x - held / 2)
    y: PixelGrid.snapped(place.value.y - held / 2)
    width: held
    height: held

    AnimatedPoint {
        id: place
        target: icon.drag.center
        precision: 0.5 / PixelGrid.ratio
    }

    Animated {
        id: lift // 1 while the icon is dragged
        target: icon.drag.dropping ? 0 : 1
    }

    Item {
        anchors.fill: parent
        scale: icon.iconEdge * (1 + 0.1 * lift.value) / icon.held

        IconShadow {
            anchors.fill: parent
            opacity: lift.value
            path: icon.drag.path
            isFolder: icon.drag.isFolder
        }

        ItemIcon {
            size: icon.held
            isFolder: icon.drag.isFolder
            path: icon.drag.path
            appPaths: icon.drag.appPaths
        }
    }
}
