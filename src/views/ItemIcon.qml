pragma ComponentBehavior: Bound

import QtQuick
import Amberquill.Views

// The icon of an application or of a folder.
Item {
    id: icon

    required property bool isFolder
    required property string path
    required property var appPaths
    required property double size // points
    property double brightness: 0

    width: size
    height: size

    AppIconTexture {
        anchors.fill: parent
        visible: !icon.isFolder
        path: icon.path
        brightness: icon.brightness
    }

    OptionalItem {
        isNeeded: icon.isFolder

        FolderIcon {
            appPaths: icon.appPaths
            size: icon.size
            brightness: icon.brightness
        }
    }
}
