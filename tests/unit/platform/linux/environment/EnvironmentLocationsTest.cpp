#include "platform/linux/environment/BaseFolders.h"

#include "support/FixedEnvironment.h"

#include <QFileInfo>
#include <gtest/gtest.h>
#include <pwd.h>
#include <unistd.h>

using namespace amberquill;
using namespace amberquill::desktop;
using namespace Qt::StringLiterals;

namespace {

Locations locationsOf(const std::map<std::string, QByteArray>& variables) {
    return locationsFromEnvironment(environmentOf(variables), QString());
}

QString bundleOf(const QString& program) {
    return locationsFromEnvironment(environmentOf({{"HOME", "/home/u"}}), program).ownBundle;
}

} // namespace

TEST(LocationsFromEnvironment, VariablesThatAreNotSetHaveDefaultsBelowTheHomeFolder) {
    const Locations locations = locationsOf({{"HOME", "/home/u"}});
    EXPECT_EQ(locations.home, u"/home/u"_s);
    EXPECT_EQ(locations.applicationSupport, u"/home/u/.local/share"_s);
    EXPECT_EQ(locations.configuration, u"/home/u/.config"_s);
    EXPECT_EQ(locations.caches, u"/home/u/.cache"_s);
    EXPECT_EQ(locations.ownBundle, QString());
}

TEST(LocationsFromEnvironment, EachVariableMovesItsFolder) {
    const Locations locations = locationsOf({{"HOME", "/home/u"},
                                             {"XDG_DATA_HOME", "/data"},
                                             {"XDG_CONFIG_HOME", "/config"},
                                             {"XDG_CACHE_HOME", "/cache"}});
    EXPECT_EQ(locations.applicationSupport, u"/data"_s);
    EXPECT_EQ(locations.configuration, u"/config"_s);
    EXPECT_EQ(locations.caches, u"/cache"_s);
}

TEST(LocationsFromEnvironment, EmptyAndRelativeVariablesCountAsNotSet) {
    const Locations locations = locationsOf({{"HOME", "/home/u"},
                                             {"XDG_DATA_HOME", ""},
                                             {"XDG_CONFIG_HOME", "config"},
                                             {"XDG_CACHE_HOME", "./c"}});
    EXPECT_EQ(locations.applicationSupport, u"/home/u/.local/share"_s);
    EXPECT_EQ(locations.configuration, u"/home/u/.config"_s);
    EXPECT_EQ(locations.caches, u"/home/u/.cache"_s);
}

TEST(LocationsFromEnvironment, RepeatedAndTrailingSlashesAreRemoved) {
    const Locations locations = locationsOf({{"HOME", "/home//u/"}, {"XDG_DATA_HOME", "//data///"}});
    EXPECT_EQ(locations.home, u"/home/u"_s);
    EXPECT_EQ(locations.applicationSupport, u"/data"_s);
}

TEST(LocationsFromEnvironment, ValuesThatAreNotUtf8CountAsNotSet) {
    EXPECT_EQ(locationsOf({{"HOME", "/home/u"}, {"XDG_DATA_HOME", "/d\xFF"}}).applicationSupport,
              u"/home/u/.local/share"_s);
}

TEST(LocationsFromEnvironment, WithoutAHomeVariableTheUserDatabaseIsUsed) {
    const passwd* const user = ::getpwuid(::getuid());
    ASSERT_NE(user, nullptr);
    const QString home = QString::fromUtf8(user->pw_dir);
    EXPECT_EQ(locationsOf({}).home, home);
    EXPECT_EQ(locationsOf({{"HOME", ""}}).home, home);
    EXPECT_EQ(locationsOf({{"HOME", "relative"}}).configuration, home + u"/.config"_s);
}

TEST(LocationsFromEnvironment, TheRootFolderCanBeAHome) {
    EXPECT_EQ(locationsOf({{"HOME", "/"}}).configuration, u"/.config"_s);
}

TEST(OwnBundle, IsTheNearestBundleAroundTheProgram) {
    EXPECT_EQ(bundleOf(u"/opt/Amberquill.app/Contents/MacOS/amberquill"_s), u"/opt/Amberquill.app"_s);
    EXPECT_EQ(bundleOf(u"/opt/Tools.app/Helpers/Amberquill.app/amberquill"_s),
              u"/opt/Tools.app/Helpers/Amberquill.app"_s);
    EXPECT_EQ(bundleOf(u"/Amberquill.app/amberquill"_s), u"/Amberquill.app"_s);
}

TEST(OwnBundle, IsEmptyForAnInstalledProgram) {
    for (const QString& program :
         {u"/usr/bin/amberquill"_s, u"/opt/.app/amberquill"_s, u"/opt/A.APP/amberquill"_s,
          u"/opt/Amberquill.app"_s, u"/opt/A.app2/amberquill"_s, QString()}) {
        EXPECT_EQ(bundleOf(program), QString()) << program.toStdString();
    }
}

TEST(RunningProgram, ItIsThisTest) {
    EXPECT_EQ(QFileInfo(runningProgram()).fileName(), u"unit_linux_environment"_s);
    EXPECT_TRUE(QFileInfo(runningProgram()).isAbsolute());
}

TEST(ProcessEnvironment, AVariableThatIsEmptyIsSet) {
    qputenv("AMBERQUILL_TEST_VARIABLE", "");
    EXPECT_EQ(processEnvironment()("AMBERQUILL_TEST_VARIABLE"), QByteArray());
    qunsetenv("AMBERQUILL_TEST_VARIABLE");
    EXPECT_EQ(processEnvironment()("AMBERQUILL_TEST_VARIABLE"), std::nullopt);
}

TEST(HomeFolderOfUser, IsReadFromTheUserDatabase) {
    EXPECT_EQ(homeFolderOfUser(u"root"_s), u"/root"_s);
}

TEST(HomeFolderOfUser, IsEmptyForAnUnknownUser) {
    EXPECT_EQ(homeFolderOfUser(u"no such user"_s), std::nullopt);
    EXPECT_EQ(homeFolderOfUser(QString()), std::nullopt);
    EXPECT_EQ(homeFolderOfUser(u"root\0x"_s), std::nullopt);
    EXPECT_EQ(homeFolderOfUser(QString(100'000, u'a')), std::nullopt);
}
