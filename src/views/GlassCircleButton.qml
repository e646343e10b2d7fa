import QtQuick
import Amberquill.Views

// A round translucent button with a symbol.
Item {
    id: button

    required property string symbol
    required property string label

    signal triggered

    width: 44
    height: 44
    containmentMask: circle

    Accessible.role: Accessible.Button
    Accessible.name: label
    Accessible.onPressAction: {
        if (enabled)
            triggered();
    }

    RoundedShape {
        id: circle
        anchors.fill: parent
        radius: width / 2
        fill: pointer.hovered ? Theme.hoveredControlFill : Theme.controlFill
        outline: Theme.controlOutline
        outlineWidth: Theme.outlineWidth
    }

    SymbolTexture {
        x: PixelGrid.snapped((button.width - width) / 2)
        y: x
        width: PixelGrid.snapped(20)
        height: width
        name: button.symbol
    }

    HoverHandler {
        id: pointer
    }

    TapHandler {
        gesturePolicy: TapHandler.ReleaseWithinBounds
        onTapped: button.triggered()
    }
}
