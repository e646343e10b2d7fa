#include "platform/linux/applications/icons/lookup/IconThemeName.h"

#include "support/DconfFiles.h"
#include "support/FixedEnvironment.h"
#include "support/TemporaryTree.h"

#include <gtest/gtest.h>

using namespace amberquill;
using namespace amberquill::desktop;
using namespace Qt::StringLiterals;

namespace {

class IconThemeNameTest : public testing::Test {
protected:
    QString chosen(const QByteArray& desktop, const QString& platformTheme = {}) const {
        return chosenIconTheme(environmentOf({{"XDG_CURRENT_DESKTOP", desktop},
                                              {"XDG_CONFIG_HOME", files_.path("config").toUtf8()},
                                              {"XDG_CONFIG_DIRS", files_.path("system").toUtf8()}}),
                               platformTheme);
    }

    TemporaryTree files_;
};

} // namespace

TEST_F(IconThemeNameTest, KdesThemeIsInKdeglobals) {
    EXPECT_EQ(chosen("KDE"), u"breeze"_s);
    files_.write("system/kdeglobals", "[Icons]\nTheme=from-system\n");
    EXPECT_EQ(chosen("KDE"), u"from-system"_s);
    files_.write("config/kdedefaults/kdeglobals", "[Icons]\nTheme=from-look\n");
    EXPECT_EQ(chosen("KDE"), u"from-look"_s);
    files_.write("config/kdeglobals",
                 "Theme=no\n[General]\nTheme=no\n[Icons]\nThemeOther=no\n Theme = own \r\n[X]\nTheme=no\n");
    EXPECT_EQ(chosen("KDE"), u"own"_s);
    EXPECT_EQ(chosen("KDE", u"platform"_s), u"own"_s);
}

TEST_F(IconThemeNameTest, ALockedKeyCounts) {
    files_.write("config/kdeglobals", "[Icons][$i]\nTheme[$i]=locked\n");
    EXPECT_EQ(chosen("KDE"), u"locked"_s);
}

TEST_F(IconThemeNameTest, GnomesThemeIsInDconf) {
    files_.write("config/gtk-3.0/settings.ini", "[Settings]\ngtk-icon-theme-name=from-gtk\n");
    files_.write("config/dconf/user",
                 dconfDatabase({{"/org/gnome/desktop/interface/icon-theme", "from-dconf"},
                                {"/org/mate/desktop/interface/icon-theme", "from-mate"},
                                {"/org/cinnamon/desktop/interface/icon-theme", "from-mint"}}));
    EXPECT_EQ(chosen("GNOME"), u"from-dconf"_s);
    EXPECT_EQ(chosen("ubuntu:GNOME", u"Adwaita"_s), u"from-dconf"_s);
    EXPECT_EQ(chosen("Budgie:GNOME"), u"from-dconf"_s);
    EXPECT_EQ(chosen("MATE"), u"from-mate"_s);
    EXPECT_EQ(chosen("X-Cinnamon"), u"from-mint"_s);
    EXPECT_EQ(chosen("sway"), u"from-gtk"_s);
}

TEST_F(IconThemeNameTest, XfceAndLxqtHaveTheirOwnSettings) {
    files_.write(
        "config/xfce4/xfconf/xfce-perchannel-xml/xsettings.xml",
        "<?xml version=\"1.0\"?>\n<channel name=\"xsettings\"><property name=\"Net\" type=\"empty\">"
        "<property name=\"ThemeName\" type=\"string\" value=\"no\"/>"
        "<property name=\"IconThemeName\" type=\"string\" value=\"from-xfce\"/></property></channel>");
    files_.write("config/lxqt/lxqt.conf", "[General]\nicon_theme=from-lxqt\n");
    EXPECT_EQ(chosen("XFCE", u"platform"_s), u"from-xfce"_s);
    EXPECT_EQ(chosen("LXQt"), u"from-lxqt"_s);
}

TEST_F(IconThemeNameTest, OtherwiseThePlatformThemeCountsThenGtksSettings) {
    EXPECT_EQ(chosen("sway"), u"hicolor"_s);
    files_.write("config/gtk-4.0/settings.ini", "[Settings]\ngtk-icon-theme-name=four\n");
    EXPECT_EQ(chosen("sway"), u"four"_s);
    files_.write("config/gtk-3.0/settings.ini", "[Settings]\ngtk-icon-theme-name=\"three\"\n");
    EXPECT_EQ(chosen("sway"), u"three"_s);
    EXPECT_EQ(chosen("sway", u"hicolor"_s), u"three"_s);
    EXPECT_EQ(chosen("sway", u"platform"_s), u"platform"_s);
}

TEST_F(IconThemeNameTest, WithoutASettingTheDesktopsDefaultCounts) {
    EXPECT_EQ(chosen("GNOME"), u"Adwaita"_s);
    EXPECT_EQ(chosen("ubuntu:GNOME"), u"Yaru"_s);
    EXPECT_EQ(chosen(""), u"hicolor"_s);
}

TEST_F(IconThemeNameTest, AnInvalidNameIsIgnored) {
    for (const auto* const name : {"../evil", "/etc", "", ".hidden", "a/b"}) {
        files_.write("config/kdeglobals", QByteArray("[Icons]\nTheme=") + name + "\n");
        EXPECT_EQ(chosen("KDE"), u"breeze"_s) << name;
        EXPECT_EQ(chosen("sway", QString::fromUtf8(name)), u"hicolor"_s) << name;
    }
}

TEST_F(IconThemeNameTest, BrokenSettingsAreIgnored) {
    files_.write("config/kdeglobals", "[Icons\nTheme[$\n[Icons]\nTheme[$i=x\nTheme");
    files_.write("config/dconf/user", "GVariant");
    files_.write("config/xfce4/xfconf/xfce-perchannel-xml/xsettings.xml",
                 "<property name='IconThemeName' value='x");
    EXPECT_EQ(chosen("KDE"), u"breeze"_s);
    EXPECT_EQ(chosen("GNOME"), u"Adwaita"_s);
    EXPECT_EQ(chosen("XFCE"), u"hicolor"_s);
    files_.write("config/xfce4/xfconf/xfce-perchannel-xml/xsettings.xml",
                 "<!DOCTYPE channel [<!ENTITY n 'IconThemeName'>]><channel><property name='&n;' "
                 "value='x'/></channel>");
    EXPECT_EQ(chosen("XFCE"), u"hicolor"_s);
}
