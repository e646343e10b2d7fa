#include "platform/linux/settings/DesktopSettings.h"

#include "support/FixedEnvironment.h"

#include <gtest/gtest.h>

using namespace amberquill;
using namespace amberquill::desktop;
using namespace Qt::StringLiterals;

TEST(DesktopSettings, TheCurrentDesktopsAreAColonList) {
    EXPECT_EQ(currentDesktops(environmentOf({{"XDG_CURRENT_DESKTOP", "ubuntu:GNOME"}})),
              QStringList({u"ubuntu"_s, u"GNOME"_s}));
    EXPECT_EQ(currentDesktops(environmentOf({})), QStringList{QString()});
}

TEST(DesktopSettings, TheUsersFolderComesBeforeTheSystems) {
    EXPECT_EQ(configurationFolders(environmentOf(
                  {{"XDG_CONFIG_HOME", "/own"}, {"XDG_CONFIG_DIRS", "/first:relative:/second/"}})),
              QStringList({u"/own"_s, u"/first"_s, u"/second"_s}));
    EXPECT_EQ(configurationFolders(environmentOf({{"HOME", "/home/me"}, {"XDG_CONFIG_DIRS", ""}})),
              QStringList({u"/home/me/.config"_s, u"/etc/xdg"_s}));
}

TEST(DesktopSettings, KdesFilesAreTheUsersTheLookAndFeelsAndTheSystems) {
    EXPECT_EQ(kdeSettingsFiles({u"/own"_s, u"/system"_s}),
              QStringList({u"/own/kdeglobals"_s, u"/own/kdedefaults/kdeglobals"_s, u"/system/kdeglobals"_s}));
}
