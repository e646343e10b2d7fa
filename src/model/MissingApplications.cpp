#include "model/MissingApplications.h"

#include <QSet>
#include <algorithm>
#include <utility>

namespace amberquill {

namespace {

// A timer may fire early by so many seconds.
constexpr double timerError = 0.01;

bool isBelow(const QString& path, const QString& folder) {
    return path.size() > folder.size() && path.startsWith(folder) && path[folder.size()] == QLatin1Char('/');
}

bool isBelowOneOf(const QString& path, const QStringList& folders) {
    return std::any_of(folders.begin(), folders.end(),
                       [&path](const QString& folder) { return isBelow(path, folder); });
}

// The layout's applications that are not in the scan, except moved ones, without duplicates.
QStringList missingFrom(const ScanResult& scan, const LaunchItems& items) {
    QSet<QString> found;
    found.reserve(static_cast<qsizetype>(scan.apps.size()));
    for (const AppInfo& app : scan.apps) {
        found.insert(app.path);
    }
    QSet<QString> known;
    QStringList missing;
    const auto take = [&](const QString& path) {
        if (!known.contains(path)) {
            known.insert(path);
            if (!found.contains(path)) {
                missing.append(path);
            }
        }
    };
    for (const LaunchItem& item : items) {
        if (const QString* path = item.asApp()) {
            take(*path);
        } else {
            const QStringList& apps = item.asFolder()->apps;
            std::for_each(apps.begin(), apps.end(), take);
        }
    }
    if (missing.isEmpty()) {
        return {};
    }
    QSet<QStringView> newNames;
    for (const AppInfo& app : scan.apps) {
        if (!known.contains(app.path)) {
            newNames.insert(lastPathComponent(app.path));
        }
    }
    missing.removeIf([&](const QString& path) { return newNames.contains(lastPathComponent(path)); });
    return missing;
}

// The roots that could be read and hold no application.
QStringList emptyRoots(const ScanResult& scan) {
    QStringList empty = scan.folders.roots;
    empty.removeIf([&scan](const QString& root) {
        return scan.folders.missing.contains(root) || scan.folders.unreadable.contains(root) ||
               std::any_of(scan.apps.begin(), scan.apps.end(),
                           [&root](const AppInfo& app) { return isBelow(app.path, root); });
    });
    return empty;
}

} // namespace

QStringList MissingApplications::staying(const LaunchItems& items, const ScanResult& scan, double now) {
    const bool isFirst = !std::exchange(hasScanned_, true);
    const QHash<QString, double> missingBefore = std::exchange(missingSince_, {});
    const QHash<QString, double> emptyBefore = std::exchange(emptySince_, {});
    nextDecision_.reset();

    QStringList staying;
    const QStringList missing = missingFrom(scan, items);
    const QStringList empty = missing.isEmpty() ? QStringList() : emptyRoots(scan);
    for (const QString& path : missing) {
        if (isBelowOneOf(path, scan.folders.unreadable)) {
            staying.append(path);
            continue;
        }
        if (isFirst) {
            continue;
        }
        if (isBelowOneOf(path, scan.folders.missing)) {
            staying.append(path);
            continue;
        }
        const auto root = std::find_if(empty.begin(), empty.end(),
                                       [&path](const QString& folder) { return isBelow(path, folder); });
        const bool ofEmptyRoot = root != empty.end();
        const double since = ofEmptyRoot ? emptyBefore.value(*root, now) : missingBefore.value(path, now);
        if (isWithin(since, ofEmptyRoot ? emptyRootDelay : gracePeriod, now)) {
            (ofEmptyRoot ? emptySince_[*root] : missingSince_[path]) = since;
            staying.append(path);
        }
    }
    return staying;
}

bool MissingApplications::isWithin(double since, double span, double now) {
    const double decision = since + span;
    if (now > decision - timerError) {
        return false;
    }
    nextDecision_ = std::min(nextDecision_.value_or(decision), decision);
    return true;
}

} // namespace amberquill
