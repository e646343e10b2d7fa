#pragma once

#include "data/GridMetrics.h"
#include "data/LaunchItem.h"

#include <QPointF>
#include <QString>
#include <variant>

namespace amberquill {

// The result of a hit test.
struct Hit {
    struct GridItem { // a tile on the page
        QString id;
        bool operator==(const GridItem&) const = default;
    };
    struct FolderItem { // an application in the open folder's panel
        QString path;
        bool operator==(const FolderItem&) const = default;
    };
    struct FolderPanel { // the open folder's panel, beside its applications
        bool operator==(const FolderPanel&) const = default;
    };
    struct OutsideFolder { // a folder is open and the point is outside its panel
        bool operator==(const OutsideFolder&) const = default;
    };
    struct Empty { // no folder is open and the point is on no tile
        bool operator==(const Empty&) const = default;
    };

    std::variant<GridItem, FolderItem, FolderPanel, OutsideFolder, Empty> what = Empty{};

    bool operator==(const Hit&) const = default;
};

// The pages as they are shown.
struct HitPage {
    const LaunchItems& items; // on all pages
    GridMetrics metrics;
    int page = 0;
    double scrollOffset = 0; // points
};

// While a folder is open, the page beneath is not hit.
Hit hitTest(const QPointF& point, const HitPage& page, const Folder* openFolder);

} // namespace amberquill
