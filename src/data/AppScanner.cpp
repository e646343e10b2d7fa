#include "data/AppScanner.h"

#include "platform/BundleInformation.h"
#include "platform/FileSystem.h"
#include "platform/RegisteredApplications.h"

#include <QSet>

namespace amberquill::AppScanner {

namespace {

// Folders at depths 0 to 3 are listed: an application lies at most four levels below its root.
constexpr int depthLimit = 4;

const auto bundleExtension = QLatin1StringView(".app");

// A path extension follows a dot that is not the name's first character.
bool isBundleName(const QString& name) {
    return name.size() > bundleExtension.size() && name.endsWith(bundleExtension, Qt::CaseSensitive);
}

class BundleScan {
public:
    explicit BundleScan(const Services& services)
        : services_(services)
        , ownBundle_(services.ownBundle.isEmpty()
                         ? QString()
                         : services.files.resolvingSymbolicLinks(services.ownBundle)) {}

    void visitRoot(const QString& root) {
        folders_.roots.append(root);
        visit(root, 0);
    }

    ScanResult takeResult() { return {std::move(result_), std::move(folders_)}; }

private:
    void visit(const QString& folder, int depth) {
        if (depth >= depthLimit) {
            return;
        }
        std::error_code error;
        const auto children = services_.files.listFolder(folder, error);
        if (!children) {
            folders_.noteFailure(folder, error, depth == 0);
            return;
        }
        for (const FolderEntry& child : *children) {
            const QString path = folder + QLatin1Char('/') + child.name;
            if (isBundleName(child.name)) {
                consider(path);
            } else if (child.isDirectory) {
                visit(path, depth + 1);
            }
        }
    }

    void consider(const QString& path) {
        const QString resolved = services_.files.resolvingSymbolicLinks(path);
        if (resolved == ownBundle_ || takenPaths_.contains(resolved)) {
            return;
        }
        takenPaths_.insert(resolved);
        if (const auto identifier = services_.bundles.bundleIdentifier(path)) {
            if (takenIdentifiers_.contains(*identifier)) {
                return;
            }
            takenIdentifiers_.insert(*identifier);
        }
        QString name = services_.files.displayName(path);
        name.remove(bundleExtension, Qt::CaseSensitive);
        result_.push_back({path, name});
    }

    const Services& services_;
    QString ownBundle_;
    std::vector<AppInfo> result_;
    ScannedFolders folders_;
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
    BundleScan bundles(services);
    for (const QString& root : searchRoots(services.home)) {
        bundles.visitRoot(root);
    }
    ScanResult result = bundles.takeResult();
    std::vector<RegisteredApplication> registered = services.registered.list(result.folders);
    result.apps.reserve(result.apps.size() + registered.size());
    for (RegisteredApplication& application : registered) {
        result.apps.push_back({std::move(application.path), std::move(application.name)});
    }
    return result;
}

} // namespace amberquill::AppScanner
