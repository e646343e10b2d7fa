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

    Accessible.role: Accessible.Button
    Accessible.name: label
    Accessible.onPressAction: triggered()

    RoundedShape {
        anchors.fill: parent
        radius: width / 2
        fill: Qt.rgba(1, 1, 1, pointer.hovered ? 0.28 : 0.18)
        outline: Qt.rgba(1, 1, 1, 0.15)
        outlineWidth: 1
    }

    SymbolTexture {
        anchors.centerIn: parent
        width: 20
        height: 20
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
