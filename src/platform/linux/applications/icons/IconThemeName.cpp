#include "platform/linux/applications/icons/IconThemeName.h"

#include "platform/linux/applications/icons/DconfDatabase.h"
#include "platform/linux/applications/icons/IconThemeIndex.h"
#include "platform/linux/applications/icons/MarkupScanner.h"
#include "platform/linux/files/BaseFolders.h"
#include "platform/linux/files/RegularFile.h"

#include <QFile>
#include <QIcon>
#include <QStringList>
#include <algorithm>
#include <array>
#include <fcntl.h>
#include <optional>
#include <string_view>

namespace amberquill::desktop {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype maximumSettings = qsizetype{4} * 1024 * 1024;

std::optional<std::string> contentOf(const QString& path) {
    QByteArray buffer;
    const auto bytes =
        readRegularFile(AT_FDCWD, QFile::encodeName(path).constData(), maximumSettings, buffer);
    return bytes ? std::optional(bytes->toByteArray().toStdString()) : std::nullopt;
}

// A theme's name, if that is what the text can be.
QString themeName(std::string_view text) {
    skipSpace(text);
    while (!text.empty() && (text.back() == ' ' || text.back() == '\t' || text.back() == '\r')) {
        text.remove_suffix(1);
    }
    if (text.size() >= 2 && text.front() == '"' && text.back() == '"') {
        text = text.substr(1, text.size() - 2);
    }
    if (!isIconThemeName(text)) {
        return {};
    }
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

// The value of a key in a group of a settings file.
QString settingsName(const QString& path, std::string_view group, std::string_view key) {
    const auto content = contentOf(path);
    std::string_view rest = content ? std::string_view(*content) : std::string_view();
    bool inGroup = false;
    while (!rest.empty()) {
        auto line = rest.substr(0, rest.find('\n'));
        rest.remove_prefix(std::min(line.size() + 1, rest.size()));
        skipSpace(line);
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
        skipSpace(line);
        if (line.starts_with('=')) {
            return themeName(line.substr(1));
        }
    }
    return {};
}

QString dconfName(const QString& configuration, std::string_view key) {
    const auto database = contentOf(pathBelow(configuration, u"dconf/user"));
    const auto text = database ? dconfText(*database, key) : std::nullopt;
    return text ? themeName(*text) : QString();
}

QString xfceName(const QString& configuration) {
    const auto content =
        contentOf(pathBelow(configuration, u"xfce4/xfconf/xfce-perchannel-xml/xsettings.xml"));
    MarkupScanner scanner(content ? std::string_view(*content) : std::string_view());
    while (const auto piece = scanner.next()) {
        std::string_view name;
        std::string_view value;
        for (const auto& attribute : piece->attributes) {
            name = attribute.name == "name" ? attribute.value : name;
            value = attribute.name == "value" ? attribute.value : value;
        }
        if (name == "IconThemeName") {
            return themeName(value);
        }
    }
    return {};
}

QStringList currentDesktops(const Environment& environment) {
    return QString::fromUtf8(environment("XDG_CURRENT_DESKTOP").value_or(QByteArray())).split(u':');
}

// The user's folder for settings, then the system's.
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

QString kdeTheme(const QStringList& configuration) {
    auto files = QStringList{pathBelow(configuration.front(), u"kdeglobals"),
                             pathBelow(configuration.front(), u"kdedefaults/kdeglobals")};
    for (const auto& folder : configuration.sliced(1)) {
        files.push_back(pathBelow(folder, u"kdeglobals"));
    }
    for (const auto& file : files) {
        if (auto name = settingsName(file, "Icons", "Theme"); !name.isEmpty()) {
            return name;
        }
    }
    return u"breeze"_s;
}

QString gtkTheme(const QStringList& configuration) {
    auto folders = configuration;
    folders.push_back(u"/etc"_s);
    for (const auto& folder : folders) {
        for (const auto* const version : {u"gtk-3.0/settings.ini", u"gtk-4.0/settings.ini"}) {
            auto name = settingsName(pathBelow(folder, version), "Settings", "gtk-icon-theme-name");
            if (!name.isEmpty()) {
                return name;
            }
        }
    }
    return {};
}

// The desktops that keep their settings in dconf, and where.
struct DconfDesktop {
    QLatin1String desktop;
    std::string_view key;
};
constexpr std::array dconfDesktops{
    DconfDesktop{.desktop = "X-Cinnamon"_L1, .key = "/org/cinnamon/desktop/interface/icon-theme"},
    DconfDesktop{.desktop = "Cinnamon"_L1, .key = "/org/cinnamon/desktop/interface/icon-theme"},
    DconfDesktop{.desktop = "MATE"_L1, .key = "/org/mate/desktop/interface/icon-theme"},
    DconfDesktop{.desktop = "GNOME"_L1, .key = "/org/gnome/desktop/interface/icon-theme"},
    DconfDesktop{.desktop = "Unity"_L1, .key = "/org/gnome/desktop/interface/icon-theme"},
    DconfDesktop{.desktop = "Pantheon"_L1, .key = "/org/gnome/desktop/interface/icon-theme"},
};

QString desktopsOwnSetting(const QStringList& desktops, const QString& configuration) {
    for (const auto& [desktop, key] : dconfDesktops) {
        if (desktops.contains(desktop)) {
            return dconfName(configuration, key);
        }
    }
    if (desktops.contains("XFCE"_L1)) {
        return xfceName(configuration);
    }
    if (desktops.contains("LXQt"_L1)) {
        return settingsName(pathBelow(configuration, u"lxqt/lxqt.conf"), "General", "icon_theme");
    }
    return {};
}

} // namespace

QString chosenIconTheme(const Environment& environment, const QString& platformTheme) {
    const auto fallback = u"hicolor"_s;
    const auto desktops = currentDesktops(environment);
    const auto configuration = configurationFolders(environment);
    if (desktops.contains("KDE"_L1)) {
        return kdeTheme(configuration);
    }
    if (auto name = desktopsOwnSetting(desktops, configuration.front()); !name.isEmpty()) {
        return name;
    }
    if (platformTheme != fallback && isIconThemeName(platformTheme.toStdString())) {
        return platformTheme;
    }
    if (auto name = gtkTheme(configuration); !name.isEmpty()) {
        return name;
    }
    if (desktops.contains("ubuntu"_L1)) {
        return u"Yaru"_s;
    }
    return desktops.contains("GNOME"_L1) ? u"Adwaita"_s : fallback;
}

QString iconThemeName() {
    return chosenIconTheme(processEnvironment(), QIcon::themeName());
}

} // namespace amberquill::desktop
