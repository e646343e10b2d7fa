#include "data/AppScanner.h"

#include "data/DataLog.h"
#include "platform/BundleInformation.h"
#include "platform/FileSystem.h"
#include "platform/RegisteredApplications.h"
#include "platform/common/RootReaders.h"

#include <QSet>
#include <optional>
#include <utility>

namespace amberquill::AppScanner {

namespace {

// Folders at depths 0 to 3 are listed: an application lies at most four levels below its root.
constexpr int depthLimit = 4;

const auto bundleExtension = QLatin1StringView(".app");

// A name that is nothing but ".app" has no extension.
bool isBundleName(const QString& name) {
    return name.size() > bundleExtension.size() && name.endsWith(bundleExtension, Qt::CaseSensitive);
}

struct Bundle {
    QString path;
    QString resolved; // through symbolic links
    std::optional<QString> identifier;
    QString name;
};

// The bundles below one root, in listing order, depth first.
struct RootBundles {
    std::vector<Bundle> bundles;
    ScannedFolders folders;
};

class RootVisit {
public:
    RootVisit(const Services& services, const RootReaders::GoOn& goOn)
        : services_(services)
        , goOn_(goOn) {}

    RootBundles of(const QString& root) {
        result_.folders.roots.append(root);
        visit(root, 0);
        return std::move(result_);
    }

private:
    void visit(const QString& folder, int depth) {
        if (depth >= depthLimit) {
            return;
        }
        std::error_code error;
        const auto children = services_.files.listFolder(folder, error);
        if (!children) {
            if (error != std::errc::no_such_file_or_directory) {
                qCDebug(dataLog).noquote() << "folder skipped:" << folder << error.message().c_str();
            }
            result_.folders.noteFailure(folder, error, depth == 0);
            return;
        }
        for (const FolderEntry& child : *children) {
            goOn_();
            const QString path = folder + QLatin1Char('/') + child.name;
            if (isBundleName(child.name)) {
                add(path);
            } else if (child.isDirectory) {
                visit(path, depth + 1);
            }
        }
    }

    void add(const QString& path) {
        QString name = services_.files.displayName(path);
        name.remove(bundleExtension, Qt::CaseSensitive);
        result_.bundles.push_back({path, services_.files.resolvingSymbolicLinks(path),
                                   services_.bundles.bundleIdentifier(path), std::move(name)});
    }

    const Services& services_;
    const RootReaders::GoOn& goOn_;
    RootBundles result_;
};

// Empty: the launcher is in no bundle. If the folder does not answer, links are not resolved.
QString resolvedOwnBundle(const Services& services) {
    if (services.ownBundle.isEmpty()) {
        return {};
    }
    const auto resolved =
        readRoots<QString>(services.readers, QStringLiteral("own bundle"), {services.ownBundle},
                           [&files = services.files](const QString& path, const RootReaders::GoOn&) {
                               return files.resolvingSymbolicLinks(path);
                           });
    return resolved.front() ? *resolved.front() : services.ownBundle;
}

// Tells the first occurrence of each bundle.
class DistinctBundles {
public:
    explicit DistinctBundles(QString ownBundle)
        : ownBundle_(std::move(ownBundle)) {}

    [[nodiscard]] bool take(const Bundle& bundle) {
        if (bundle.resolved == ownBundle_) {
            return skip(bundle, "the launcher itself");
        }
        if (takenPaths_.contains(bundle.resolved)) {
            return skip(bundle, "listed already");
        }
        takenPaths_.insert(bundle.resolved);
        if (bundle.identifier) {
            if (takenIdentifiers_.contains(*bundle.identifier)) {
                return skip(bundle, "its identifier is listed already");
            }
            takenIdentifiers_.insert(*bundle.identifier);
        }
        return true;
    }

private:
    static bool skip(const Bundle& bundle, const char* reason) {
        qCDebug(dataLog).noquote() << "bundle skipped:" << bundle.path << reason;
        return false;
    }

    QString ownBundle_;
    QSet<QString> takenPaths_;
    QSet<QString> takenIdentifiers_;
};

} // namespace

QStringList searchRoots(const QString& home) {
    return {QStringLiteral("/Applications"), QStringLiteral("/System/Applications"),
            QStringLiteral("/System/Cryptexes/App/System/Applications"),
            home + QStringLiteral("/Applications")};
}

ScanResult scan(const Services& services) {
    const QStringList roots = searchRoots(services.home);
    const auto read = readRoots<RootBundles>(services.readers, QStringLiteral("bundles"), roots,
                                             [services](const QString& root, const RootReaders::GoOn& goOn) {
                                                 return RootVisit(services, goOn).of(root);
                                             });
    ScanResult result;
    DistinctBundles distinct(resolvedOwnBundle(services));
    for (std::size_t i = 0; i < read.size(); ++i) {
        if (read[i] == nullptr) {
            const QString& root = roots[static_cast<qsizetype>(i)];
            qCDebug(dataLog).noquote() << "folder skipped:" << root << "does not answer";
            result.folders.noteGivenUp(root);
            continue;
        }
        result.folders.append(read[i]->folders);
        for (const Bundle& bundle : read[i]->bundles) {
            if (distinct.take(bundle)) {
                result.apps.push_back({bundle.path, bundle.name});
            }
        }
    }
    std::vector<RegisteredApplication> registered = services.registered.list(result.folders);
    result.apps.reserve(result.apps.size() + registered.size());
    for (RegisteredApplication& application : registered) {
        result.apps.push_back({std::move(application.path), std::move(application.name)});
    }
    return result;
}

} // namespace amberquill::AppScanner
