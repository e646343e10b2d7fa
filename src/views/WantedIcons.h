#pragma once

#include "model/LauncherModel.h"

#include <QObject>
#include <QSet>
#include <QString>
#include <span>

namespace amberquill {

class IconCache;
class TileRows;

// Tells the icon cache which icons are shown or may be next: those of the first page, where a start begins,
// of the page shown and its neighbours, also beneath a search, and of the open folder. Has those of the
// neighbours decoded as soon as a page is turned, before their tiles are made.
class WantedIcons final : public QObject {
    Q_OBJECT

public:
    // `tiles` are those of the pages. All outlive this object.
    WantedIcons(const LauncherModel& model, const TileRows& tiles, IconCache& cache,
                QObject* parent = nullptr);

private:
    void tell();
    void decodeNeighbours();
    void addPages(QSet<QString>& paths, const LaunchItems& items, int page) const;
    [[nodiscard]] std::span<const LaunchItem> itemsOf(const LaunchItems& items, int page) const;

    const LauncherModel& model_;
    const TileRows& tiles_;
    IconCache& cache_;
    int browsed_ = 0; // the page beneath a search
};

} // namespace amberquill
