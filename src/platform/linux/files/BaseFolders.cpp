#include "platform/linux/files/BaseFolders.h"

#include "platform/linux/files/Utf8.h"
#include <pwd.h>
#include <unistd.h>
#include <vector>

namespace amberquill::desktop {
namespace {

std::optional<QString> homeInUserDatabase() {
    constexpr std::size_t enough = std::size_t{64} * 1024;
    std::vector<char> buffer(enough);
    passwd entry = {};
    passwd* found = nullptr;
    if (::getpwuid_r(::getuid(), &entry, buffer.data(), buffer.size(), &found) != 0 || found == nullptr ||
        entry.pw_dir == nullptr) {
        return std::nullopt;
    }
    return absolutePath(entry.pw_dir);
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
    return homeInUserDatabase().value_or(QString(QLatin1Char('/')));
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
