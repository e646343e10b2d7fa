#include "platform/linux/environment/BaseFolders.h"

#include "platform/common/Utf8.h"

#include <array>
#include <climits>
#include <pwd.h>
#include <unistd.h>
#include <vector>

namespace amberquill::desktop {

namespace {

// `look` calls getpwuid_r or getpwnam_r on the given entry.
template<typename Look>
std::optional<QString> homeInUserDatabase(Look look) {
    constexpr std::size_t enough = std::size_t{64} * 1024;
    std::vector<char> buffer(enough);
    passwd entry = {};
    passwd* found = nullptr;
    if (look(&entry, buffer.data(), buffer.size(), &found) != 0 || found == nullptr ||
        entry.pw_dir == nullptr) {
        return std::nullopt;
    }
    return absolutePath(entry.pw_dir);
}

std::optional<QString> ownHomeInUserDatabase() {
    return homeInUserDatabase([](passwd* entry, char* buffer, std::size_t size, passwd** found) {
        return ::getpwuid_r(::getuid(), entry, buffer, size, found);
    });
}

constexpr const char* defaultDataFolders = "/usr/local/share:/usr/share";

void appendIfLacking(QStringList& folders, const QString& folder) {
    if (!folders.contains(folder)) {
        folders.append(folder);
    }
}

QString bundleAround(const QString& program) {
    constexpr QLatin1String ending(".app");
    for (qsizetype slash = program.lastIndexOf(QLatin1Char('/')); slash > 0;) {
        const QStringView folder = QStringView(program).left(slash);
        slash = folder.lastIndexOf(QLatin1Char('/'));
        const QStringView name = folder.mid(slash + 1);
        if (name.size() > ending.size() && name.endsWith(ending)) {
            return folder.toString();
        }
    }
    return {};
}

} // namespace

std::optional<QString> absolutePath(QByteArrayView path) {
    if (!path.startsWith('/') || path.contains('\0') || !path.isValidUtf8()) {
        return std::nullopt;
    }
    QByteArray tidy;
    tidy.reserve(path.size());
    for (const char byte : path) {
        if (byte != '/' || !tidy.endsWith('/')) {
            tidy.append(byte);
        }
    }
    if (tidy.size() > 1 && tidy.endsWith('/')) {
        tidy.chop(1);
    }
    return textOfUtf8(tidy);
}

QString pathBelow(const QString& folder, QStringView name) {
    QString path = folder;
    if (!path.endsWith(QLatin1Char('/'))) {
        path += QLatin1Char('/');
    }
    return path.append(name);
}

QString homeFolder(const Environment& environment) {
    if (const auto value = environment("HOME")) {
        if (auto home = absolutePath(*value)) {
            return *std::move(home);
        }
    }
    return ownHomeInUserDatabase().value_or(QString(QLatin1Char('/')));
}

std::optional<QString> homeFolderOfUser(const QString& name) {
    const QByteArray bytes = name.toUtf8();
    if (bytes.isEmpty() || bytes.contains('\0')) {
        return std::nullopt;
    }
    return homeInUserDatabase([&bytes](passwd* entry, char* buffer, std::size_t size, passwd** found) {
        return ::getpwnam_r(bytes.constData(), entry, buffer, size, found);
    });
}

QString baseFolder(const Environment& environment, const char* variable, QStringView fallback) {
    if (const auto value = environment(variable)) {
        if (auto folder = absolutePath(*value)) {
            return *std::move(folder);
        }
    }
    return pathBelow(homeFolder(environment), fallback);
}

QStringList DataFolders::below(QStringView name) const {
    QStringList result;
    result.reserve(folders.size());
    for (const QString& folder : folders) {
        result.append(pathBelow(folder, name));
    }
    return result;
}

DataFolders dataFoldersFromEnvironment(const Environment& environment) {
    const QString own = baseFolder(environment, "XDG_DATA_HOME", u".local/share");
    const QByteArray listed = environment("XDG_DATA_DIRS").value_or(QByteArray());
    DataFolders result;
    result.folders.append(own);
    for (const QByteArray& part : (listed.isEmpty() ? QByteArray(defaultDataFolders) : listed).split(':')) {
        if (const auto folder = absolutePath(part)) {
            appendIfLacking(result.folders, *folder);
        }
    }
    // The variables lack these folders if the session was started before Flatpak or Snap was installed, or
    // without the system's profile scripts. Their applications are listed anyway.
    appendIfLacking(result.folders, own + QLatin1String("/flatpak/exports/share"));
    appendIfLacking(result.folders, QStringLiteral("/var/lib/flatpak/exports/share"));
    appendIfLacking(result.folders, QStringLiteral("/var/lib/snapd/desktop"));
    return result;
}

QString runningProgram() {
    std::array<char, PATH_MAX> target = {};
    const ssize_t size = ::readlink("/proc/self/exe", target.data(), target.size());
    if (size <= 0 || size == PATH_MAX) {
        return {};
    }
    return absolutePath(QByteArrayView(target.data(), size)).value_or(QString());
}

Locations locationsFromEnvironment(const Environment& environment, const QString& program) {
    return {.home = homeFolder(environment),
            .applicationSupport = baseFolder(environment, "XDG_DATA_HOME", u".local/share"),
            .configuration = baseFolder(environment, "XDG_CONFIG_HOME", u".config"),
            .caches = baseFolder(environment, "XDG_CACHE_HOME", u".cache"),
            .ownBundle = bundleAround(program)};
}

} // namespace amberquill::desktop
