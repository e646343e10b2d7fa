#include "data/LayoutReconciler.h"

#include "data/DataLog.h"
#include "data/NameOrder.h"

#include <QHash>
#include <utility>
#include <vector>

namespace amberquill::LayoutReconciler {

namespace {

// Finds the installed application of each saved path. Lives for one call; refers to its arguments.
class Claims {
public:
    Claims(const LaunchItems& saved, const std::vector<AppInfo>& installed)
        : installed_(installed)
        , states_(installed.size()) {
        for (const LaunchItem& item : saved) {
            if (const QString* path = item.asApp()) {
                reserve(*path);
            } else {
                for (const QString& member : item.asFolder()->apps) {
                    reserve(member);
                }
            }
        }
    }

    // The installed path for the next saved path. None: it is not installed, or has been claimed. To be
    // called for every saved path, in the order of the layout.
    std::optional<QString> claim(const QString& path) {
        if (const auto place = places_[next_++]) {
            return std::exchange(states_[*place].claimed, true) ? std::nullopt : std::optional(path);
        }
        for (const std::size_t candidate : sameFileName(path)) {
            State& state = states_[candidate];
            if (!state.reserved && !state.claimed) {
                state.claimed = true;
                return installed_[candidate].path;
            }
        }
        return std::nullopt;
    }

    // Whether the installed application at this place has been claimed.
    [[nodiscard]] bool isClaimed(std::size_t place) const { return states_[oneOfPath(place)].claimed; }

private:
    struct State {
        bool reserved = false; // the saved layout has this very path
        bool claimed = false;
    };

    void reserve(const QString& path) {
        const std::optional<std::size_t> place = placeOf(path);
        places_.push_back(place);
        if (place) {
            states_[*place].reserved = true;
        }
    }

    // The table is made on first use: the first start has no saved paths.
    std::optional<std::size_t> placeOf(const QString& path) {
        if (byPath_.isEmpty()) {
            byPath_.reserve(static_cast<qsizetype>(installed_.size()));
            for (std::size_t place = 0; place < installed_.size(); ++place) {
                byPath_.insert(installed_[place].path, place);
            }
        }
        const auto found = byPath_.constFind(path);
        return found == byPath_.constEnd() ? std::nullopt : std::optional(*found);
    }

    // The same position for all applications that are installed under one path.
    [[nodiscard]] std::size_t oneOfPath(std::size_t place) const {
        const bool areAllDifferent =
            byPath_.isEmpty() || static_cast<std::size_t>(byPath_.size()) == installed_.size();
        return areAllDifferent ? place : byPath_.value(installed_[place].path);
    }

    // The table is made on first use: most scans find every application where it was.
    const std::vector<std::size_t>& sameFileName(const QString& path) {
        if (byFileName_.isEmpty()) {
            byFileName_.reserve(static_cast<qsizetype>(installed_.size()));
            for (std::size_t place = 0; place < installed_.size(); ++place) {
                byFileName_[lastPathComponent(installed_[place].path)].push_back(oneOfPath(place));
            }
        }
        static const std::vector<std::size_t> none;
        const auto found = byFileName_.constFind(lastPathComponent(path));
        return found == byFileName_.constEnd() ? none : *found;
    }

    const std::vector<AppInfo>& installed_;
    std::vector<State> states_;                      // of the installed applications, in their order
    std::vector<std::optional<std::size_t>> places_; // of each saved path in `installed_`
    std::size_t next_ = 0;                           // in `places_`
    QHash<QStringView, std::size_t> byPath_;
    QHash<QStringView, std::vector<std::size_t>> byFileName_;
};

std::vector<QString> newPaths(const Claims& claims, const std::vector<AppInfo>& installed,
                              const NameOrder& order) {
    std::vector<QString> names;
    std::vector<QString> paths;
    for (std::size_t place = 0; place < installed.size(); ++place) {
        if (!claims.isClaimed(place)) {
            names.push_back(installed[place].name);
            paths.push_back(installed[place].path);
        }
    }
    std::vector<QString> sorted;
    sorted.reserve(paths.size());
    for (const std::size_t position : order.order(names)) {
        sorted.push_back(std::move(paths[position]));
    }
    return sorted;
}

} // namespace

LaunchItems reconcile(const LaunchItems& saved, const std::vector<AppInfo>& installed,
                      const std::optional<QString>& newAppsFolder, const NameOrder& order) {
    Claims claims(saved, installed);
    LaunchItems result;
    result.reserve(saved.size());
    for (const LaunchItem& item : saved) {
        if (const QString* path = item.asApp()) {
            if (auto claimed = claims.claim(*path)) {
                result.push_back(LaunchItem::app(*std::move(claimed)));
            } else {
                qCDebug(dataLog).noquote() << "item dropped:" << *path;
            }
            continue;
        }
        Folder folder = *item.asFolder();
        QStringList kept;
        kept.reserve(folder.apps.size());
        for (const QString& path : std::as_const(folder.apps)) {
            if (auto claimed = claims.claim(path)) {
                kept.append(*std::move(claimed));
            } else {
                qCDebug(dataLog).noquote() << "item dropped:" << path;
            }
        }
        folder.apps = std::move(kept);
        result.push_back(LaunchItem::folder(std::move(folder)));
    }

    std::vector<QString> added = newPaths(claims, installed, order);
    if (newAppsFolder && added.size() >= 2) {
        result.push_back(LaunchItem::folder(
            {QUuid::createUuid(), *newAppsFolder, QStringList(added.begin(), added.end())}));
        return result;
    }
    result.reserve(result.size() + added.size());
    for (QString& path : added) {
        result.push_back(LaunchItem::app(std::move(path)));
    }
    return result;
}

} // namespace amberquill::LayoutReconciler
