#pragma once

#include "model/LauncherModel.h"

#include <QObject>
#include <QSet>
#include <QString>
#include <span>

namespace amberquill {

class IconCache;
class TileRows;

// Tells the icon cache which icons to keep: those of the first page (for the next start), of the page shown
// and its neighbours, also while a search covers them, and of the open folder. Prefetches the icons of the
// neighbours as soon as a page is turned, before their tiles are made.
class WantedIcons final : public QObject {
    Q_OBJECT

public:
    // `tiles`: those of the pages. All outlive this object.
    WantedIcons(const LauncherModel& model, const TileRows& tiles, IconCache& cache,
                QObject* parent = nullptr);

private:
    void updateNeeded();
    void prefetchNeighbours();
    void addPages(QSet<QString>& paths, const LaunchItems& items, int page) const;
    [[nodiscard]] std::span<const LaunchItem> itemsOf(const LaunchItems& items, int page) const;

    const LauncherModel& model_;
    const TileRows& tiles_;
    IconCache& cache_;
    int browsed_ = 0; // the page that is shown when a search ends
};

} // namespace amberquill
