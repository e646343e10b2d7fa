#include "platform/linux/settings/DesktopSettings.h"

#include "platform/linux/environment/BaseFolders.h"
#include "platform/linux/files/RegularFile.h"

#include <QFile>
#include <algorithm>
#include <fcntl.h>

namespace amberquill::desktop {

Q_LOGGING_CATEGORY(settingsLog, "amberquill.settings", QtCriticalMsg)

using namespace Qt::StringLiterals;

QStringList currentDesktops(const Environment& environment) {
    return QString::fromUtf8(environment("XDG_CURRENT_DESKTOP").value_or(QByteArray())).split(u':');
}

QStringList configurationFolders(const Environment& environment) {
    QStringList folders{baseFolder(environment, "XDG_CONFIG_HOME", u".config")};
    auto system = environment("XDG_CONFIG_DIRS").value_or(QByteArray());
    if (system.isEmpty()) {
        system = "/etc/xdg";
    }
    for (const auto& folder : system.split(':')) {
        if (const auto path = absolutePath(folder)) {
            folders.push_back(*path);
        }
    }
    return folders;
}

QStringList kdeSettingsFiles(const QStringList& configuration) {
    QStringList files{pathBelow(configuration.front(), u"kdeglobals"),
                      pathBelow(configuration.front(), u"kdedefaults/kdeglobals")};
    for (const auto& folder : configuration.sliced(1)) {
        files.push_back(pathBelow(folder, u"kdeglobals"));
    }
    return files;
}

namespace {

constexpr qsizetype maximumSettings = qsizetype{4} * 1024 * 1024;

constexpr std::string_view blanks = " \t\r\n";

std::string_view trimmed(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(blanks), text.size()));
    return text.substr(0, text.find_last_not_of(blanks) + 1);
}

} // namespace

std::optional<std::string> settingsContent(const QString& path) {
    QByteArray buffer;
    const auto bytes =
        readRegularFile(AT_FDCWD, QFile::encodeName(path).constData(), maximumSettings, buffer);
    return bytes ? std::optional(bytes->toByteArray().toStdString()) : std::nullopt;
}

std::optional<std::string_view> settingsValue(std::string_view content, std::string_view group,
                                              std::string_view key) {
    bool inGroup = false;
    while (!content.empty()) {
        auto line = content.substr(0, content.find('\n'));
        content.remove_prefix(std::min(line.size() + 1, content.size()));
        line = trimmed(line);
        if (line.starts_with('[')) {
            inGroup = line.substr(1, line.find(']') - 1) == group;
            continue;
        }
        if (!inGroup || !line.starts_with(key)) {
            continue;
        }
        line.remove_prefix(key.size());
        if (line.starts_with("[$")) { // marks a key that the user may not change
            line.remove_prefix(std::min(line.find(']'), line.size() - 1) + 1);
        }
        line = trimmed(line);
        if (line.starts_with('=')) {
            return trimmed(line.substr(1));
        }
    }
    return std::nullopt;
}

} // namespace amberquill::desktop
