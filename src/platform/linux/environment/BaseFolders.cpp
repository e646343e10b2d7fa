#include "platform/linux/environment/BaseFolders.h"

#include "platform/common/Utf8.h"
#include <pwd.h>
#include <unistd.h>
#include <vector>

namespace amberquill::desktop {
namespace {

// `look` is one of the system's look-ups: it fills in the entry that it is given.
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

} // namespace amberquill::desktop
