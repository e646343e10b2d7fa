#pragma once

#include <QColor>
#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace amberquill {

// The views' colours, radii and text sizes, for QML and for the items painted in C++. Lengths are points. The
// background's own colours are in BackgroundWash.
class Theme : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(QColor text MEMBER text CONSTANT FINAL)
    Q_PROPERTY(QColor selection MEMBER selection CONSTANT FINAL)
    Q_PROPERTY(QColor placeholderText MEMBER placeholderText CONSTANT FINAL)
    Q_PROPERTY(QColor noResultsText MEMBER noResultsText CONSTANT FINAL)
    Q_PROPERTY(QColor emptyFolderText MEMBER emptyFolderText CONSTANT FINAL)
    Q_PROPERTY(QColor controlFill MEMBER controlFill CONSTANT FINAL)
    Q_PROPERTY(QColor hoveredControlFill MEMBER hoveredControlFill CONSTANT FINAL)
    Q_PROPERTY(QColor controlOutline MEMBER controlOutline CONSTANT FINAL)
    Q_PROPERTY(QColor currentDot MEMBER currentDot CONSTANT FINAL)
    Q_PROPERTY(QColor otherDot MEMBER otherDot CONSTANT FINAL)
    Q_PROPERTY(QColor highlight MEMBER highlight CONSTANT FINAL)
    Q_PROPERTY(QColor mergeTarget MEMBER mergeTarget CONSTANT FINAL)
    Q_PROPERTY(QColor folderFill MEMBER folderFill CONSTANT FINAL)
    Q_PROPERTY(QColor folderOutline MEMBER folderOutline CONSTANT FINAL)
    Q_PROPERTY(double outlineWidth MEMBER outlineWidth CONSTANT FINAL)
    Q_PROPERTY(double panelRadius MEMBER panelRadius CONSTANT FINAL)
    Q_PROPERTY(double highlightRadius MEMBER highlightRadius CONSTANT FINAL)
    Q_PROPERTY(double mergeTargetRadius MEMBER mergeTargetRadius CONSTANT FINAL)
    Q_PROPERTY(double folderBody MEMBER folderBody CONSTANT FINAL)
    Q_PROPERTY(double folderRadius MEMBER folderRadius CONSTANT FINAL)
    Q_PROPERTY(int searchTextSize MEMBER searchTextSize CONSTANT FINAL)
    Q_PROPERTY(int noResultsTextSize MEMBER noResultsTextSize CONSTANT FINAL)
    Q_PROPERTY(int emptyFolderTextSize MEMBER emptyFolderTextSize CONSTANT FINAL)
    Q_PROPERTY(int folderTitleSize MEMBER folderTitleSize CONSTANT FINAL)

public:
    using QObject::QObject;

    [[nodiscard]] static QColor white(double opacity) {
        return QColor::fromRgbF(1, 1, 1, static_cast<float>(opacity));
    }
    [[nodiscard]] static QColor black(double opacity) {
        return QColor::fromRgbF(0, 0, 0, static_cast<float>(opacity));
    }

    const QColor text = Qt::white;
    const QColor selection = white(0.35);
    const QColor placeholderText = white(0.55);
    const QColor noResultsText = white(0.7);
    const QColor emptyFolderText = white(0.6);
    const QColor controlFill = white(0.18);
    const QColor hoveredControlFill = white(0.28);
    const QColor controlOutline = white(0.15);
    const QColor currentDot = white(0.95);
    const QColor otherDot = white(0.35);
    const QColor highlight = white(0.16); // the tile that Return opens
    const QColor mergeTarget = white(0.26);
    const QColor folderFill = white(folderWhite);
    const QColor folderOutline = white(0.22);

    static constexpr double folderWhite = 0.2;
    static constexpr double labelShadow = 0.45; // black
    static constexpr double iconShadow = 0.35;  // black, below the icon that is dragged
    static constexpr double panelShadow = 0.25; // black
    static constexpr double panelFrost = 0.05;  // white over the blurred page behind the panel
    static constexpr double panelFill = 0.06;   // white, over the frost
    static constexpr double panelOutline = 0.18;

    static constexpr double outlineWidth = 1;
    static constexpr double panelRadius = 30;
    static constexpr double highlightRadius = 18;
    static constexpr double mergeTargetRadius = 0.2; // of the icon's edge
    static constexpr double folderBody = 0.82;       // a folder's body, of the icon's edge
    static constexpr double folderRadius = 0.225;    // of the body's edge

    static constexpr int searchTextSize = 16;
    static constexpr int noResultsTextSize = 22;
    static constexpr int emptyFolderTextSize = 15;
    static constexpr int folderTitleSize = 24;
};

} // namespace amberquill
