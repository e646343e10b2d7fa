pragma ComponentBehavior: Bound

import QtQuick
import Amberquill.Views

// Everything in the launcher's window: the colour wash, and over it the grid and the controls.
ContentItem {
    id: root

    required property LauncherModel launcher
    required property TileModel tiles
    required property FolderTiles folder
    required property DragView drag
    required property ViewTexts texts

    readonly property size contentSize: Qt.size(width, height)

    // The nearest whole device pixel to a position in points.
    function snapped(value: double): double {
        return Math.round(value * devicePixelRatio) / devicePixelRatio;
    }

    function adoptRatio() {
        tiles.devicePixelRatio = devicePixelRatio;
        folder.devicePixelRatio = devicePixelRatio;
    }

    onContentSizeChanged: launcher.size = contentSize
    onDevicePixelRatioChanged: adoptRatio()
    Component.onCompleted: {
        adoptRatio();
        launcher.size = contentSize;
    }

    BackgroundLayer {
        id: background
        anchors.fill: parent
        launcher: root.launcher
    }

    Item {
        id: content
        anchors.fill: parent
        scale: entranceScale.value
        opacity: entranceOpacity.value

        Animated {
            id: entranceScale
            target: root.launcher.presented ? 1 : 1.08
            precision: 0.5 / Math.max(root.width, 1)
        }

        Animated {
            id: entranceOpacity
            target: root.launcher.presented ? 1 : 0
            isFade: true
        }

        PointerArea {
            anchors.fill: parent
            model: root.launcher
        }

        Item {
            id: strip
            x: root.snapped(stripPlace.value)
            height: parent.height
            opacity: dimming.value

            Animated {
                id: stripPlace
                target: root.launcher.scrollOffset - root.launcher.page * root.launcher.size.width
                precision: 0.5 / root.devicePixelRatio
            }

            Animated {
                id: dimming
                target: root.folder.isOpen ? folderPanel.dimming : 1
                isFade: true
            }

            Repeater {
                model: root.tiles

                IconTile {
                    tiles: root.tiles
                    covered: root.folder.isOpen
                    onActivated: id => root.launcher.activate(id)
                }
            }
        }

        Text {
            x: root.snapped(root.tiles.gridCenter.x - width / 2)
            y: root.snapped(root.tiles.gridCenter.y - height / 2)
            visible: root.launcher.findsNothing
            color: Qt.rgba(1, 1, 1, 0.7)
            font.pixelSize: 22
            text: root.texts.noResults
            textFormat: Text.PlainText
            renderType: Text.NativeRendering
        }

        FolderPanel {
            id: folderPanel
            anchors.fill: parent
            folder: root.folder
            launcher: root.launcher
            background: background
            texts: root.texts
            ratio: root.devicePixelRatio
        }

        Repeater {
            model: root.drag.isActive ? 1 : 0

            FloatingIcon {
                drag: root.drag
                iconEdge: root.tiles.layout.icon.width
                ratio: root.devicePixelRatio
            }
        }

        Row {
            x: root.snapped((parent.width - width) / 2)
            y: root.snapped(40)
            spacing: 12

            GlassCircleButton {
                objectName: "menuButton"
                symbol: "line.3.horizontal"
                ratio: root.devicePixelRatio
                label: root.texts.settings
                onTriggered: root.launcher.showMenu()
            }

            GlassCircleButton {
                symbol: "plus"
                ratio: root.devicePixelRatio
                label: root.texts.newFolder
                onTriggered: root.launcher.newEmptyFolder()
            }

            SearchCapsule {
                launcher: root.launcher
                texts: root.texts
                ratio: root.devicePixelRatio
            }
        }

        PageDots {
            x: root.snapped((parent.width - width) / 2)
            y: root.snapped(parent.height - 26 - height)
            visible: !root.launcher.folderIsOpen && !root.launcher.isSearching
            count: root.launcher.pageCount
            current: root.launcher.page
            texts: root.texts
            ratio: root.devicePixelRatio
            onSelected: page => root.launcher.turnToPage(page)
        }

        Repeater {
            model: folderPanel.isVisible ? 1 : 0

            FolderTitle {
                opacity: folderPanel.opacity
                folder: root.folder
                ratio: root.devicePixelRatio
            }
        }
    }
}
