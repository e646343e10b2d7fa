#include "data/LayoutReconciler.h"

#include "data/NameOrder.h"

#include <QHash>
#include <QSet>
#include <utility>

namespace amberquill::LayoutReconciler {

namespace {

QStringView fileName(const QString& path) {
    return QStringView(path).mid(path.lastIndexOf(QLatin1Char('/')) + 1);
}

// Which installed application each saved path stands for. Lives for one call; keeps views into its arguments.
class Claims {
public:
    Claims(const LaunchItems& saved, const std::vector<AppInfo>& installed)
        : installed_(installed) {
        state_.reserve(static_cast<qsizetype>(installed.size()));
        for (const AppInfo& app : installed) {
            state_.insert(app.path, {});
        }
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

    // The installed path that the saved `path` yields, or none when it is gone or taken.
    std::optional<QString> claim(const QString& path) {
        if (const auto known = state_.find(path); known != state_.end()) {
            return std::exchange(known->claimed, true) ? std::nullopt : std::optional(path);
        }
        for (const QString* candidate : sameFileName(path)) {
            State& state = state_[*candidate];
            if (!state.reserved && !state.claimed) {
                state.claimed = true;
                return *candidate;
            }
        }
        return std::nullopt;
    }

    [[nodiscard]] bool isClaimed(const QString& path) const { return state_.value(path).claimed; }

private:
    struct State {
        bool reserved = false; // the saved layout places it by its own path
        bool claimed = false;
    };

    void reserve(const QString& path) {
        if (const auto known = state_.find(path); known != state_.end()) {
            known->reserved = true;
        }
    }

    // Most scans find every application where it was, and then the table is never needed.
    const std::vector<const QString*>& sameFileName(const QString& path) {
        if (byFileName_.isEmpty()) {
            byFileName_.reserve(static_cast<qsizetype>(installed_.size()));
            for (const AppInfo& app : installed_) {
                byFileName_[fileName(app.path)].push_back(&app.path);
            }
        }
        static const std::vector<const QString*> none;
        const auto found = byFileName_.constFind(fileName(path));
        return found == byFileName_.constEnd() ? none : *found;
    }

    const std::vector<AppInfo>& installed_;
    QHash<QString, State> state_;
    QHash<QStringView, std::vector<const QString*>> byFileName_;
};

std::vector<QString> newPaths(const Claims& claims, const std::vector<AppInfo>& installed,
                              const NameOrder& order) {
    std::vector<QString> names;
    std::vector<QString> paths;
    for (const AppInfo& app : installed) {
        if (!claims.isClaimed(app.path)) {
            names.push_back(app.name);
            paths.push_back(app.path);
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
            }
            continue;
        }
        Folder folder = *item.asFolder();
        QStringList kept;
        kept.reserve(folder.apps.size());
        for (const QString& path : std::as_const(folder.apps)) {
            if (auto claimed = claims.claim(path)) {
                kept.append(*std::move(claimed));
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
    for (QString& path : added) {
        result.push_back(LaunchItem::app(std::move(path)));
    }
    return result;
}

} // namespace amberquill::LayoutReconciler
