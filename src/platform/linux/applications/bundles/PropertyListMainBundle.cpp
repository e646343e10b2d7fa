#include "platform/linux/applications/bundles/PropertyListMainBundle.h"

#include "platform/linux/applications/bundles/BundlePropertyList.h"
#include "platform/linux/applications/bundles/PropertyListGuard.h"
#include "platform/linux/files/RegularFile.h"

#include <QDir>
#include <QLoggingCategory>
#include <fcntl.h>

namespace amberquill::desktop {
namespace {

Q_LOGGING_CATEGORY(mainBundleLog, "amberquill.bundles", QtCriticalMsg)

} // namespace

std::optional<QString> PropertyListMainBundle::text(const QString& key) const {
    QByteArray buffer;
    for (auto path = paths_.begin(); !texts_ && path != paths_.end(); ++path) {
        const auto bytes =
            readRegularFile(AT_FDCWD, path->toUtf8().constData(), maximumPropertyListBytes, buffer);
        texts_ = bytes ? propertyListTexts(*bytes) : std::nullopt;
        if (bytes && !texts_) {
            qCDebug(mainBundleLog) << "property list refused:" << *path;
        }
    }
    if (!texts_) {
        texts_.emplace();
    }
    const auto found = texts_->constFind(key);
    return found == texts_->constEnd() ? std::nullopt : std::optional(*found);
}

QStringList mainBundlePaths(const QString& program, const QString& ownBundle) {
    QStringList paths;
    if (!ownBundle.isEmpty()) {
        paths += ownBundle + QStringLiteral("/Contents/Info.plist");
    }
    const qsizetype slash = program.lastIndexOf(QLatin1Char('/'));
    if (slash >= 0) {
        const QDir folder(program.left(slash + 1));
        for (const char* const data : {AMBERQUILL_DATA_FROM_PROGRAM, "share"}) {
            paths += QDir::cleanPath(folder.absoluteFilePath(QString::fromUtf8(data))) +
                     QStringLiteral("/amberquill/Info.plist");
        }
    }
    return paths;
}

} // namespace amberquill::desktop
