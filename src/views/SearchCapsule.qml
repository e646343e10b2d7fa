import QtQuick
import Amberquill.Views

// The search field: a capsule with a magnifying glass, the text, and a button that clears it.
Item {
    id: capsule

    required property LauncherModel launcher
    required property ViewTexts texts

    width: 280
    height: 44

    RoundedShape {
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
        x: 16
        anchors.verticalCenter: parent.verticalCenter
        width: 18
        height: 18
        opacity: 0.8
        name: "magnifyingglass"
    }

    TextInput {
        id: field
        objectName: "searchField"
        anchors.left: glass.right
        anchors.leftMargin: 8
        anchors.right: clear.visible ? clear.left : parent.right
        anchors.rightMargin: clear.visible ? 8 : 16
        anchors.verticalCenter: parent.verticalCenter
        color: "white"
        font.pixelSize: 16
        clip: true
        focus: true
        selectByMouse: true
        selectionColor: Qt.rgba(1, 1, 1, 0.35)
        selectedTextColor: "white"

        onTextEdited: capsule.launcher.searchText = text
        onAccepted: capsule.launcher.launchFirstResult()

        Accessible.role: Accessible.EditableText
        Accessible.name: capsule.texts.search
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
        visible: field.text === "" && field.preeditText === ""
        color: Qt.rgba(1, 1, 1, 0.55)
        font: field.font
        elide: Text.ElideRight
        text: capsule.texts.search
        textFormat: Text.PlainText
    }

    SymbolTexture {
        id: clear
        objectName: "clearButton"
        anchors.right: parent.right
        anchors.rightMargin: 16
        anchors.verticalCenter: parent.verticalCenter
        width: 18
        height: 18
        visible: field.text !== ""
        opacity: 0.7
        name: "xmark.circle.fill"

        Accessible.role: Accessible.Button
        Accessible.name: capsule.texts.clear
        Accessible.onPressAction: capsule.launcher.searchText = ""

        TapHandler {
            margin: 8
            gesturePolicy: TapHandler.ReleaseWithinBounds
            onTapped: capsule.launcher.searchText = ""
        }
    }
}
