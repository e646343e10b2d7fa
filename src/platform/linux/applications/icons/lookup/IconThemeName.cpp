#include "platform/linux/applications/icons/lookup/IconThemeName.h"

#include "platform/linux/applications/icons/lookup/IconThemeIndex.h"
#include "platform/linux/environment/BaseFolders.h"
#include "platform/linux/settings/DconfDatabase.h"
#include "platform/linux/settings/DesktopSettings.h"

#include <QByteArrayView>
#include <QIcon>
#include <QStringList>
#include <QXmlStreamReader>
#include <array>
#include <optional>
#include <string_view>

namespace amberquill::desktop {

using namespace Qt::StringLiterals;

namespace {

// The text as a theme's name, without quotes; empty: not a valid name.
QString themeName(QByteArrayView text) {
    text = text.trimmed();
    if (text.size() >= 2 && text.front() == '"' && text.back() == '"') {
        text = text.sliced(1, text.size() - 2);
    }
    return isIconThemeName({text.data(), static_cast<std::size_t>(text.size())}) ? QString::fromUtf8(text)
                                                                                 : QString();
}

QString settingsName(const QString& path, std::string_view group, std::string_view key) {
    const auto content = settingsContent(path);
    const auto value = content ? settingsValue(*content, group, key) : std::nullopt;
    return value ? themeName(*value) : QString();
}

QString dconfName(const QString& configuration, std::string_view key) {
    const auto database = settingsContent(pathBelow(configuration, u"dconf/user"));
    const auto text = database ? dconfText(*database, key) : std::nullopt;
    return text ? themeName(*text) : QString();
}

QString xfceName(const QString& configuration) {
    const auto content =
        settingsContent(pathBelow(configuration, u"xfce4/xfconf/xfce-perchannel-xml/xsettings.xml"));
    QXmlStreamReader reader(content ? QByteArrayView(*content).toByteArray() : QByteArray());
    while (!reader.atEnd()) {
        const auto token = reader.readNext();
        if (token == QXmlStreamReader::DTD) {
            break; // Xfce's files have none; not read, because entities expand
        }
        const auto attributes = reader.attributes();
        if (token == QXmlStreamReader::StartElement && attributes.value("name"_L1) == "IconThemeName"_L1) {
            return themeName(attributes.value("value"_L1).toUtf8());
        }
    }
    return {};
}

QString kdeTheme(const QStringList& configuration) {
    for (const auto& file : kdeSettingsFiles(configuration)) {
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

// The desktops that keep their settings in dconf, and their keys.
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
