import QtQuick
import Amberquill.Views

// The search field: a capsule with a magnifying glass, the text, and a button that clears it.
Item {
    id: capsule

    required property LauncherModel launcher
    required property ViewTexts texts

    width: 280
    height: 44
    containmentMask: shape

    RoundedShape {
        id: shape
        anchors.fill: parent
        radius: height / 2
        fill: Theme.controlFill
        outline: Theme.controlOutline
        outlineWidth: Theme.outlineWidth
    }

    TapHandler {
        gesturePolicy: TapHandler.ReleaseWithinBounds
        onTapped: field.forceActiveFocus()
    }

    SymbolTexture {
        id: glass
        x: PixelGrid.snapped(16)
        y: PixelGrid.snapped((capsule.height - height) / 2)
        width: PixelGrid.snapped(18)
        height: width
        opacity: 0.8
        name: "magnifyingglass"
    }

    TextLine {
        id: field
        objectName: "searchField"
        anchors.left: glass.right
        anchors.leftMargin: 8 - padding
        anchors.right: clear.visible ? clear.left : parent.right
        anchors.rightMargin: (clear.visible ? 8 : 16) - padding
        y: PixelGrid.snapped((capsule.height - height) / 2)
        font.pixelSize: Theme.searchTextSize
        focus: true

        onTextEdited: capsule.launcher.searchText = text

        Accessible.name: capsule.texts.search
        Accessible.searchEdit: true
    }

    // Typing would remove a binding on the field's own property.
    Binding {
        field.text: capsule.launcher.searchText
    }

    Connections {
        target: capsule.launcher

        function onFocusSearchTokenChanged() {
            field.forceActiveFocus();
        }
    }

    Text {
        anchors.fill: field
        anchors.margins: field.padding
        visible: field.text === "" && field.preeditText === ""
        color: Theme.placeholderText
        font: field.font
        elide: Text.ElideRight
        text: capsule.texts.search
        textFormat: Text.PlainText
        renderType: Text.NativeRendering
    }

    SymbolTexture {
        id: clear
        objectName: "clearButton"
        x: PixelGrid.snapped(capsule.width - 16 - width)
        y: glass.y
        width: glass.width
        height: width
        visible: field.text !== ""
        opacity: 0.7
        name: "xmark.circle.fill"

        Accessible.role: Accessible.Button
        Accessible.name: capsule.texts.clear
        Accessible.onPressAction: {
            if (enabled)
                capsule.launcher.searchText = "";
        }

        TapHandler {
            margin: 8
            gesturePolicy: TapHandler.ReleaseWithinBounds
            onTapped: capsule.launcher.searchText = ""
        }
    }
}
