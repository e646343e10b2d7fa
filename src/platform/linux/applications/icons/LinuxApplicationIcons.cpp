#include "platform/linux/applications/icons/LinuxApplicationIcons.h"

#include "platform/linux/applications/bundles/BundlePropertyList.h"
#include "platform/linux/applications/entries/DesktopEntry.h"
#include "platform/linux/applications/icons/DecoderMessages.h"
#include "platform/linux/decoder/pictures/IconDecoder.h"
#include "platform/linux/files/RegularFile.h"

#include <QFile>
#include <array>
#include <fcntl.h>

namespace amberquill::desktop {

using namespace Qt::StringLiterals;

namespace {

constexpr int maximumTries = 4; // files that are tried for one icon

// What a bundle's icon file may end in where its property list does not say.
constexpr std::array bundleEndings{""_L1, ".icns"_L1, ".png"_L1, ".tiff"_L1};

} // namespace

LinuxApplicationIcons::LinuxApplicationIcons(const Settings& settings)
    : locale_(settings.locale)
    , lookup_(settings.baseFolders, settings.theme)
    , journal_(QFile::encodeName(settings.journalFolder).toStdString()) {
    quietenDecoders();
}

QImage LinuxApplicationIcons::image(const QString& applicationPath, int edge) const {
    if (applicationPath.endsWith(u".desktop")) {
        return entryImage(applicationPath, edge);
    }
    if (applicationPath.endsWith(u".app")) {
        return bundleImage(applicationPath, edge);
    }
    return {};
}

QImage LinuxApplicationIcons::standIn(int edge) const {
    return namedImage(u"application-x-executable"_s, edge);
}

void LinuxApplicationIcons::forget() {
    lookup_.forget();
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
            return image;
        }
    }
    return {};
}

QImage LinuxApplicationIcons::bundleImage(const QString& path, int edge) const {
    const auto bundle = readBundlePropertyList(path);
    if (!bundle || bundle->iconFile.isEmpty() || bundle->iconFile.contains(u'/')) {
        return {};
    }
    const auto resources = bundle->folder + (bundle->gnustep ? u"/Resources/"_s : u"/Contents/Resources/"_s);
    for (const auto ending : bundleEndings) {
        if (auto image = fileImage(resources + bundle->iconFile + ending, edge); !image.isNull()) {
            return image;
        }
    }
    return {};
}

QImage LinuxApplicationIcons::fileImage(const QString& path, int edge) const {
    const auto bytes = QFile::encodeName(path);
    const auto state = bytes.contains('\0') ? std::nullopt : fileState(bytes.toStdString());
    if (!state || state->size > maximumIconBytes) {
        return {};
    }
    return journal_.decode(*state, [&] {
        QByteArray buffer;
        const auto content = readRegularFile(AT_FDCWD, bytes.constData(), maximumIconBytes, buffer);
        if (!content) {
            return QImage();
        }
        buffer.truncate(content->size());
        const QuietDecoding quiet;
        return decodedIcon(buffer, edge, Fonts::Present).image;
    });
}

} // namespace amberquill::desktop
