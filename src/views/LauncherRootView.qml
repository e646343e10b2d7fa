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

    function adoptRatio() {
        PixelGrid.ratio = devicePixelRatio;
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
            x: PixelGrid.snapped(stripPlace.value)
            height: parent.height
            opacity: dimming.value

            Animated {
                id: stripPlace
                target: root.launcher.scrollOffset - root.launcher.page * root.launcher.size.width
                precision: 0.5 / PixelGrid.ratio
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
            x: PixelGrid.snapped(root.tiles.gridCenter.x - width / 2)
            y: PixelGrid.snapped(root.tiles.gridCenter.y - height / 2)
            visible: root.launcher.findsNothing
            color: Theme.noResultsText
            font.pixelSize: Theme.noResultsTextSize
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
        }

        OptionalItem {
            isNeeded: root.drag.isActive

            FloatingIcon {
                drag: root.drag
                iconEdge: root.tiles.layout.icon.width
            }
        }

        Row {
            x: PixelGrid.snapped((parent.width - width) / 2)
            y: PixelGrid.snapped(40)
            spacing: 12

            GlassCircleButton {
                objectName: "menuButton"
                symbol: "line.3.horizontal"
                label: root.texts.settings
                onTriggered: root.launcher.showMenu()
            }

            GlassCircleButton {
                symbol: "plus"
                label: root.texts.newFolder
                onTriggered: root.launcher.newEmptyFolder()
            }

            SearchCapsule {
                launcher: root.launcher
                texts: root.texts
            }
        }

        PageDots {
            x: PixelGrid.snapped((parent.width - width) / 2)
            y: PixelGrid.snapped(parent.height - 26 - height)
            visible: !root.launcher.folderIsOpen && !root.launcher.isSearching
            count: root.launcher.pageCount
            current: root.launcher.page
            texts: root.texts
            onSelected: page => root.launcher.turnToPage(page)
        }

        OptionalItem {
            isNeeded: folderPanel.isVisible

            FolderTitle {
                opacity: folderPanel.opacity
                folder: root.folder
            }
        }
    }
}
