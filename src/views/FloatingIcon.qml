import QtQuick
import Amberquill.Views

// The icon that follows the pointer during a drag, and glides into its place at the end of it.
Item {
    id: icon

    required property DragView drag
    required property double iconEdge // on the page, in points
    required property double ratio // device pixels in a point

    // Painted at the size that it has in the hand, so that it is sharp there.
    readonly property double held: Math.round(iconEdge * 1.1 * ratio) / ratio

    x: Math.round((place.value.x - held / 2) * ratio) / ratio
    y: Math.round((place.value.y - held / 2) * ratio) / ratio
    width: held
    height: held

    AnimatedPoint {
        id: place
        target: icon.drag.center
        precision: 0.5 / icon.ratio
    }

    Animated {
        id: lift // 1 while it is held
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
            ratio: icon.ratio
            isFolder: icon.drag.isFolder
            path: icon.drag.path
            appPaths: icon.drag.appPaths
        }
    }
}
