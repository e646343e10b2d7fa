#include "platform/linux/applications/icons/LinuxApplicationIcons.h"

#include "platform/linux/applications/bundles/BundlePropertyList.h"
#include "platform/linux/applications/entries/DesktopEntry.h"
#include "platform/linux/applications/icons/workers/IconWorkerPool.h"
#include "platform/linux/decoder/channel/IconBounds.h"
#include "platform/linux/files/RegularFile.h"

#include <QFile>
#include <QLoggingCategory>
#include <array>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <span>
#include <utility>

namespace amberquill::desktop {

using namespace Qt::StringLiterals;

namespace {

Q_LOGGING_CATEGORY(iconsLog, "amberquill.icons", QtCriticalMsg)

constexpr int maximumTries = 4; // files tried for one icon

// The extensions of a bundle's icon file that its property list may leave out.
constexpr std::array bundleIconExtensions{""_L1, ".icns"_L1, ".png"_L1, ".tiff"_L1};

} // namespace

LinuxApplicationIcons::LinuxApplicationIcons(const Settings& settings, IconWorkerPool& workers)
    : locale_(settings.locale)
    , lookup_(settings.baseFolders, settings.theme)
    , workers_(workers)
    , undecodable_(QFile::encodeName(settings.cacheFolder + u"/undecodable"_s).toStdString(),
                   settings.version) {}

QImage LinuxApplicationIcons::image(const QString& applicationPath, int edge) const {
    if (applicationPath.endsWith(u".desktop")) {
        return entryImage(applicationPath, edge);
    }
    if (applicationPath.endsWith(u".app")) {
        return bundleImage(applicationPath, edge);
    }
    return {};
}

QImage LinuxApplicationIcons::genericIcon(int edge) const {
    return namedImage(u"application-x-executable"_s, edge);
}

void LinuxApplicationIcons::forget() {
    lookup_.forget();
}

void LinuxApplicationIcons::rest() {
    workers_.rest();
}

bool LinuxApplicationIcons::takeUnavailable() {
    return wasUnavailable_.exchange(false);
}

QImage LinuxApplicationIcons::entryImage(const QString& path, int edge) const {
    const auto entry = readDesktopEntry(path, locale_);
    return entry ? namedImage(entry->icon, edge) : QImage();
}

QImage LinuxApplicationIcons::namedImage(const QString& icon, int edge) const {
    for (int attempt = 0; attempt < maximumTries; ++attempt) {
        const auto file = lookup_.find(icon, edge, attempt);
        if (!file) {
            break;
        }
        if (auto image = fileImage(*file, edge); !image.isNull()) {
            if (attempt > 0) {
                qCDebug(iconsLog) << "next best file for" << icon << *file;
            }
            return image;
        }
    }
    qCDebug(iconsLog) << "no picture for" << icon;
    return {};
}

QImage LinuxApplicationIcons::bundleImage(const QString& path, int edge) const {
    const auto bundle = readBundlePropertyList(path);
    if (!bundle || bundle->iconFile.isEmpty() || bundle->iconFile.contains(u'/')) {
        return {};
    }
    const auto resources = bundle->folder + (bundle->gnustep ? u"/Resources/"_s : u"/Contents/Resources/"_s);
    for (const auto extension : bundleIconExtensions) {
        if (auto image = fileImage(resources + bundle->iconFile + extension, edge); !image.isNull()) {
            return image;
        }
    }
    return {};
}

QImage LinuxApplicationIcons::fileImage(const QString& path, int edge) const {
    const auto name = QFile::encodeName(path);
    if (name.contains('\0')) {
        return {};
    }
    const auto file = openForReading(AT_FDCWD, name.constData());
    // Taken from the open file: another file may have its path by now.
    const auto state = file.isOpen() ? fileState(file, name.toStdString()) : std::nullopt;
    if (!state) {
        return {};
    }
    if (undecodable_.contains(*state)) {
        qCDebug(iconsLog) << "known as undecodable:" << path;
        return {};
    }
    QByteArray buffer;
    const auto content = readRegularFile(file, maximumIconBytes, buffer);
    if (!content) {
        qCDebug(iconsLog) << "not read:" << path << std::strerror(errno);
        return {};
    }
    auto decoded = workers_.decode(std::as_bytes(std::span(content->begin(), content->end())), edge);
    switch (decoded.kind) {
    case DecodedFile::Kind::Picture:
        break;
    case DecodedFile::Kind::NoPicture:
        qCDebug(iconsLog) << "no icon, or a broken one:" << path;
        break;
    case DecodedFile::Kind::Undecodable:
        qCDebug(iconsLog) << "undecodable:" << path;
        undecodable_.add(*state);
        break;
    case DecodedFile::Kind::Unavailable:
        qCDebug(iconsLog) << "no process to decode" << path;
        wasUnavailable_ = true;
        break;
    }
    return std::move(decoded.image);
}

} // namespace amberquill::desktop
