import QtQuick
import Amberquill.Views

// The search field: a capsule with a magnifying glass, the text, and a button that clears it.
Item {
    id: capsule

    required property LauncherModel launcher
    required property ViewTexts texts
    required property double ratio // device pixels in a point

    width: 280
    height: 44
    containmentMask: shape

    function snapped(value: double): double {
        return Math.round(value * ratio) / ratio;
    }

    RoundedShape {
        id: shape
        anchors.fill: parent
        radius: height / 2
        fill: Qt.rgba(1, 1, 1, 0.18)
        outline: Qt.rgba(1, 1, 1, 0.15)
        outlineWidth: 1
    }

    TapHandler {
        gesturePolicy: TapHandler.ReleaseWithinBounds
        onTapped: field.forceActiveFocus()
    }

    SymbolTexture {
        id: glass
        x: capsule.snapped(16)
        y: capsule.snapped((capsule.height - height) / 2)
        width: capsule.snapped(18)
        height: width
        opacity: 0.8
        name: "magnifyingglass"
    }

    TextLine {
        id: field
        objectName: "searchField"
        ratio: capsule.ratio
        anchors.left: glass.right
        anchors.leftMargin: 8 - padding
        anchors.right: clear.visible ? clear.left : parent.right
        anchors.rightMargin: (clear.visible ? 8 : 16) - padding
        y: capsule.snapped((capsule.height - height) / 2)
        font.pixelSize: 16
        focus: true

        onTextEdited: capsule.launcher.searchText = text

        Accessible.name: capsule.texts.search
        Accessible.searchEdit: true
    }

    // Not a binding of the field's own, which typing would end.
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
        color: Qt.rgba(1, 1, 1, 0.55)
        font: field.font
        elide: Text.ElideRight
        text: capsule.texts.search
        textFormat: Text.PlainText
        renderType: Text.NativeRendering
    }

    SymbolTexture {
        id: clear
        objectName: "clearButton"
        x: capsule.snapped(capsule.width - 16 - width)
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
