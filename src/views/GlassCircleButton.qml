import QtQuick
import Amberquill.Views

// A round translucent button with a symbol.
Item {
    id: button

    required property string symbol
    required property string label
    required property double ratio // device pixels in a point

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
        fill: Qt.rgba(1, 1, 1, pointer.hovered ? 0.28 : 0.18)
        outline: Qt.rgba(1, 1, 1, 0.15)
        outlineWidth: 1
    }

    SymbolTexture {
        x: Math.round((button.width - width) / 2 * button.ratio) / button.ratio
        y: x
        width: Math.round(20 * button.ratio) / button.ratio
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
