#include "platform/linux/applications/entries/DesktopEntryApplications.h"

#include "support/FixedEnvironment.h"
#include "support/LogRecorder.h"
#include "support/OrdinaryUser.h"
#include "support/TemporaryTree.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <sys/stat.h>

using namespace amberquill;
using namespace amberquill::desktop;
using namespace Qt::StringLiterals;
namespace fs = std::filesystem;

namespace {

QByteArray entry(const QByteArray& name, const QByteArray& lines = {}) {
    return "[Desktop Entry]\nType=Application\nName=" + name + "\nExec=program\n" + lines;
}

class DesktopEntryApplicationsTest : public testing::Test {
protected:
    DesktopEntryApplicationsTest() {
        settings_.dataFolders.folders = QStringList{tree_.path("a"), tree_.path("b")};
        settings_.programFolders = QStringList{tree_.path("bin")};
    }

    void write(const std::string& file, const QByteArray& content) const {
        const std::string folder = file.substr(0, file.find('/'));
        tree_.write(folder + "/applications" + file.substr(folder.size()), content);
    }

    // The listed names, in the list's order.
    [[nodiscard]] QStringList names() const {
        QStringList names;
        for (const RegisteredApplication& application : DesktopEntryApplications(settings_).list()) {
            names.append(application.name);
        }
        return names;
    }

    TemporaryTree tree_;
    EntrySettings settings_;
};

using DesktopEntryList = DesktopEntryApplicationsTest;
using DesktopEntryPrecedence = DesktopEntryApplicationsTest;
using DesktopEntryFilters = DesktopEntryApplicationsTest;

} // namespace

TEST_F(DesktopEntryList, EntriesAreInOrderOfTheirIds) {
    write("b/zebra.desktop", entry("Ant"));
    write("a/kde/kate.desktop", entry("Zoo"));
    write("a/able.desktop", entry("Middle"));
    EXPECT_EQ(DesktopEntryApplications(settings_).list(),
              (std::vector<RegisteredApplication>{{tree_.path("a/applications/able.desktop"), u"Middle"_s},
                                                  {tree_.path("a/applications/kde/kate.desktop"), u"Zoo"_s},
                                                  {tree_.path("b/applications/zebra.desktop"), u"Ant"_s}}));
}

TEST_F(DesktopEntryList, NamesAreInTheUsersLanguage) {
    write("a/x.desktop", entry("plain", "Name[de]=deutsch\n"));
    EXPECT_EQ(names(), QStringList{u"plain"_s});
    settings_.locale = entryLocaleFor({"de_AT.UTF-8"});
    EXPECT_EQ(names(), QStringList{u"deutsch"_s});
}

TEST_F(DesktopEntryList, TheLaunchersOwnEntryIsNeverListed) {
    write("a/org.amberquill.Amberquill.desktop", entry("Amberquill"));
    write("b/org.amberquill.Amberquill.desktop", entry("Amberquill"));
    write("b/org/amberquill.Amberquill.desktop", entry("another id"));
    write("b/org.amberquill.Amberquill.Tool.desktop", entry("Tool"));
    EXPECT_EQ(names(), (QStringList{u"another id"_s, u"Tool"_s}));
}

TEST_F(DesktopEntryList, EntriesOfTheSameNameOrProgramAreAllListed) {
    write("a/one.desktop", entry("Office"));
    write("a/two.desktop", entry("Office"));
    write("b/three.desktop", entry("Office"));
    EXPECT_EQ(names(), (QStringList{u"Office"_s, u"Office"_s, u"Office"_s}));
}

TEST_F(DesktopEntryList, EveryListedPathIsItsFile) {
    write("a/\xEF\xBB\xBFmark.desktop", entry("mark"));
    write("a/größe 日本/x y.desktop", entry("letters"));
    const DesktopEntryApplications applications(settings_);
    EXPECT_EQ(applications.list().size(), 2U);
    for (const RegisteredApplication& application : applications.list()) {
        EXPECT_EQ(applications.name(application.path), application.name) << application.path.toStdString();
    }
}

TEST_F(DesktopEntryList, WithoutFoldersTheListIsEmpty) {
    EXPECT_EQ(names(), QStringList());
    settings_.dataFolders.folders.clear();
    EXPECT_EQ(names(), QStringList());
}

TEST_F(DesktopEntryList, ABadFileDoesNotEndTheScan) {
    write("a/1.desktop", entry("first"));
    write("a/2.desktop", QByteArray(maximumEntryBytes + 1, 'x'));
    write("a/3.desktop", "[Desktop Entry]\n" + QByteArray(maximumEntryLineBytes + 1, 'x'));
    write("a/4.desktop", "\0\xFF\xFE binary"_ba);
    write("a/5.desktop", {});
    ASSERT_EQ(::mkfifo(tree_.at("a/applications/6.desktop").c_str(), 0600), 0);
    tree_.link("a/applications/7.desktop", "/dev/zero");
    tree_.link("a/applications/8.desktop", "missing");
    tree_.makeFolder("a/applications/9.desktop");
    write("a/last.desktop", entry("last"));
    EXPECT_EQ(names(), (QStringList{u"first"_s, u"last"_s}));
}

TEST_F(DesktopEntryList, ASmallFileIsNotMixedWithALargerOneBefore) {
    write("a/1.desktop", entry("large", "Name[de]=old\nTerminal=true\nX=" + QByteArray(10'000, 'x') + "\n"));
    write("a/2.desktop", entry("small"));
    settings_.locale = entryLocaleFor({"de"});
    EXPECT_EQ(names(), (QStringList{u"old"_s, u"small"_s}));
}

TEST_F(DesktopEntryPrecedence, AHiddenWinnerIsNotReplacedByALowerFile) {
    write("a/x.desktop", entry("upper", "Hidden=true\n"));
    write("b/x.desktop", entry("lower"));
    EXPECT_EQ(names(), QStringList());
}

TEST_F(DesktopEntryPrecedence, AnInvalidWinnerIsNotReplacedByALowerFile) {
    write("b/x.desktop", entry("lower"));
    for (const QByteArray& invalid :
         {QByteArray(), "junk"_ba, "[Desktop Entry]\nType=Link\nName=Link\nURL=x\n"_ba,
          "[Desktop Entry]\nType=Application\nExec=program\n"_ba,
          "[Desktop Entry]\nType=Application\nName=no program\n"_ba,
          QByteArray(maximumEntryBytes + 1, '#')}) {
        write("a/x.desktop", invalid);
        EXPECT_EQ(names(), QStringList()) << invalid.left(60).toStdString();
    }
}

TEST_F(DesktopEntryPrecedence, AWinnerThatIsNotInstalledIsNotReplacedByALowerFile) {
    write("a/x.desktop", entry("upper", "TryExec=missing\n"));
    write("b/x.desktop", entry("lower"));
    EXPECT_EQ(names(), QStringList());
}

TEST_F(DesktopEntryPrecedence, AWinnerThatIsNotShownIsNotReplacedByALowerFile) {
    write("a/x.desktop", entry("upper", "NoDisplay=true\n"));
    write("a/y.desktop", entry("upper", "OnlyShowIn=KDE\n"));
    write("b/x.desktop", entry("lower"));
    write("b/y.desktop", entry("lower"));
    EXPECT_EQ(names(), QStringList());
}

TEST_F(DesktopEntryPrecedence, AnUnreadableWinnerIsNotReplacedByALowerFile) {
    fs::permissions(tree_.at(), fs::perms{0755});
    write("a/x.desktop", entry("upper"));
    tree_.link("a/applications/y.desktop", "/dev/null");
    write("b/x.desktop", entry("lower"));
    write("b/y.desktop", entry("lower"));
    fs::permissions(tree_.at("a/applications/x.desktop"), fs::perms{0});
    const OrdinaryUser user;
    EXPECT_EQ(names(), QStringList());
}

TEST_F(DesktopEntryPrecedence, AHiddenLowerFileHidesNothing) {
    write("a/x.desktop", entry("upper"));
    write("b/x.desktop", entry("lower", "Hidden=true\n"));
    EXPECT_EQ(names(), QStringList{u"upper"_s});
}

TEST_F(DesktopEntryFilters, NoDisplayIsNotListed) {
    write("a/x.desktop", entry("x", "NoDisplay=true\n"));
    write("a/y.desktop", entry("y", "NoDisplay=false\n"));
    write("a/z.desktop", entry("z", "NoDisplay=maybe\nHidden=perhaps\n"));
    EXPECT_EQ(names(), (QStringList{u"y"_s, u"z"_s}));
}

TEST_F(DesktopEntryFilters, OnlyShowInAndNotShowInAreHonoured) {
    write("a/everywhere.desktop", entry("everywhere"));
    write("a/gnome.desktop", entry("gnome", "OnlyShowIn=GNOME;Unity;\n"));
    write("a/kde.desktop", entry("kde", "OnlyShowIn=KDE\n"));
    write("a/not-gnome.desktop", entry("not gnome", "NotShowIn=GNOME;\n"));
    EXPECT_EQ(names(), (QStringList{u"everywhere"_s, u"not gnome"_s}));
    settings_.currentDesktops = QStringList{u"GNOME"_s};
    EXPECT_EQ(names(), (QStringList{u"everywhere"_s, u"gnome"_s}));
    settings_.currentDesktops = QStringList{u"KDE"_s};
    EXPECT_EQ(names(), (QStringList{u"everywhere"_s, u"kde"_s, u"not gnome"_s}));
}

TEST_F(DesktopEntryFilters, TryExecMustBeInstalled) {
    tree_.write("bin/installed", "#!/bin/sh\n");
    fs::permissions(tree_.at("bin/installed"), fs::perms{0755});
    const QByteArray path = tree_.path("bin/installed").toUtf8();
    write("a/1.desktop", entry("in the path", "TryExec=installed\n"));
    write("a/2.desktop", entry("absolute", "TryExec=" + path + "\n"));
    write("a/3.desktop", entry("missing", "TryExec=missing\n"));
    write("a/4.desktop", entry("missing too", "TryExec=" + path + "2\n"));
    write("a/5.desktop", entry("says nothing", "TryExec=\n"));
    write("a/6.desktop", entry("arguments are part of the name", "TryExec=installed --version\n"));
    EXPECT_EQ(names(), (QStringList{u"in the path"_s, u"absolute"_s, u"says nothing"_s}));
}

TEST_F(DesktopEntryFilters, TheProgramOfExecNeedNotExist) {
    write("a/x.desktop", entry("x", "Exec=not-installed-anywhere\n"));
    EXPECT_EQ(names(), QStringList{u"x"_s});
}

TEST(IsShownIn, TheFirstListedDesktopDecides) {
    const QStringList ubuntu{u"ubuntu"_s, u"GNOME"_s};
    const auto list = [](const char* name) { return std::optional(QStringList{QLatin1String(name)}); };
    EXPECT_TRUE(isShownIn(ubuntu, list("GNOME"), std::nullopt));
    EXPECT_FALSE(isShownIn(ubuntu, std::nullopt, list("GNOME")));
    EXPECT_TRUE(isShownIn(ubuntu, list("ubuntu"), list("GNOME")));
    EXPECT_FALSE(isShownIn(ubuntu, list("GNOME"), list("ubuntu")));
    EXPECT_TRUE(isShownIn(ubuntu, std::nullopt, list("KDE")));
    EXPECT_FALSE(isShownIn(ubuntu, list("KDE"), std::nullopt));
    EXPECT_FALSE(isShownIn(ubuntu, list("gnome"), std::nullopt)); // the case matters
}

TEST(IsShownIn, WithoutADesktopOnlyShowInHides) {
    EXPECT_TRUE(isShownIn({}, std::nullopt, std::nullopt));
    EXPECT_TRUE(isShownIn({}, std::nullopt, QStringList{u"KDE"_s}));
    EXPECT_FALSE(isShownIn({}, QStringList{u"KDE"_s}, std::nullopt));
    EXPECT_FALSE(isShownIn({u"KDE"_s}, QStringList(), std::nullopt)); // an empty list
}

TEST(EntrySettings, ComeFromTheEnvironment) {
    const EntrySettings settings =
        entrySettingsFromEnvironment(environmentOf({{"HOME", "/home/u"},
                                                    {"XDG_DATA_DIRS", "/share"},
                                                    {"XDG_CURRENT_DESKTOP", "ubuntu::GNOME"},
                                                    {"LANG", "de_AT.UTF-8"},
                                                    {"PATH", "/bin"}}));
    EXPECT_EQ(settings.dataFolders.folders.mid(0, 2), (QStringList{u"/home/u/.local/share"_s, u"/share"_s}));
    EXPECT_EQ(settings.currentDesktops, (QStringList{u"ubuntu"_s, u"GNOME"_s}));
    EXPECT_EQ(settings.locale.suffixes, (std::vector<QByteArray>{"de_AT", "de"}));
    EXPECT_EQ(settings.programFolders, QStringList{u"/bin"_s});
    const DesktopEntryApplications applications(settings);
    EXPECT_EQ(applications.watchedFolders(),
              (QStringList{u"/home/u/.local/share/applications"_s, u"/share/applications"_s,
                           u"/home/u/.local/share/flatpak/exports/share/applications"_s,
                           u"/var/lib/flatpak/exports/share/applications"_s,
                           u"/var/lib/snapd/desktop/applications"_s}));
    EXPECT_EQ(applications.desktopId(u"/share/applications/kde/kate.desktop"_s), u"kde-kate.desktop"_s);
    EXPECT_EQ(applications.desktopId(u"/opt/kate.desktop"_s), std::nullopt);
}

TEST_F(DesktopEntryList, TheNameOfAnUnlistedEntryIsKnown) {
    write("a/x.desktop", entry("plain", "Name[de]=deutsch\nNoDisplay=true\n"));
    settings_.locale = entryLocaleFor({"de"});
    const DesktopEntryApplications applications(settings_);
    EXPECT_EQ(applications.name(tree_.path("a/applications/x.desktop")), u"deutsch"_s);
    EXPECT_EQ(applications.name(tree_.path("a/applications/missing.desktop")), std::nullopt);
}

TEST_F(DesktopEntryList, EachEntryThatIsNotListedIsLoggedWithTheReason) {
    write("a/listed.desktop", entry("Listed"));
    write("a/broken.desktop", "nothing\n");
    write("a/link.desktop", "[Desktop Entry]\nType=Link\nName=Link\n");
    write("a/nameless.desktop", "[Desktop Entry]\nType=Application\nExec=program\n");
    write("a/no-exec.desktop", "[Desktop Entry]\nType=Application\nName=Name\n");
    write("a/hidden.desktop", entry("Hidden", "Hidden=true\n"));
    write("a/no-display.desktop", entry("NoDisplay", "NoDisplay=true\n"));
    write("a/desktop.desktop", entry("KDE's", "OnlyShowIn=KDE;\n"));
    write("a/missing.desktop", entry("Missing", "TryExec=missing\n"));
    write("a/large.desktop", entry("Large", QByteArray(maximumEntryBytes, '#')));
    ASSERT_EQ(::mkfifo(tree_.path("a/applications/pipe.desktop").toUtf8().constData(), 0600), 0);
    const auto log = debugLog("amberquill.entries", [&] { EXPECT_EQ(names(), QStringList{u"Listed"_s}); });
    const auto logged = [&](const std::string& name, const std::string& reason) {
        return log.find("not listed: \"" + tree_.path("a/applications/").toStdString() + name +
                        ".desktop\" " + reason) != std::string::npos;
    };
    EXPECT_TRUE(logged("broken", "not a desktop entry, or over a bound")) << log;
    EXPECT_TRUE(logged("link", "Type is not Application")) << log;
    EXPECT_TRUE(logged("nameless", "no Name")) << log;
    EXPECT_TRUE(logged("no-exec", "neither Exec nor DBusActivatable")) << log;
    EXPECT_TRUE(logged("hidden", "Hidden")) << log;
    EXPECT_TRUE(logged("no-display", "NoDisplay")) << log;
    EXPECT_TRUE(logged("desktop", "not for this desktop")) << log;
    EXPECT_TRUE(logged("missing", "TryExec is not installed")) << log;
    EXPECT_TRUE(logged("large", "too large")) << log;
    EXPECT_TRUE(logged("pipe", "cannot be read")) << log;
    EXPECT_EQ(std::count(log.begin(), log.end(), '\n'), 10) << log;
}
