#include "platform/linux/session/AutostartLoginItem.h"

#include "platform/linux/files/PosixFileSystem.h"
#include "support/FixedEnvironment.h"
#include "support/MemoryFileSystem.h"
#include "support/TemporaryTree.h"

#include <gtest/gtest.h>

using namespace amberquill;
using namespace amberquill::desktop;
using namespace Qt::StringLiterals;

namespace {

const QString own = u"/home/u/.config/autostart/org.amberquill.Amberquill.desktop"_s;
const QString systems = u"/etc/xdg/autostart/org.amberquill.Amberquill.desktop"_s;

class AutostartLoginItemTest : public testing::Test {
protected:
    MemoryFileSystem files_;
    AutostartLoginItem item_{
        files_,
        {{u"/home/u/.config/autostart"_s, u"/etc/xdg/autostart"_s}, u"/opt/a b/amberquill"_s, {u"GNOME"_s}}};
};

} // namespace

TEST(AutostartFolders, AreTheUsersAndThenTheSystems) {
    EXPECT_EQ(autostartFolders(environmentOf({{"HOME", "/home/u"}})),
              (QStringList{u"/home/u/.config/autostart"_s, u"/etc/xdg/autostart"_s}));
    EXPECT_EQ(autostartFolders(environmentOf({{"HOME", "/home/u"},
                                              {"XDG_CONFIG_HOME", "/conf/"},
                                              {"XDG_CONFIG_DIRS", "/b:relative::/c/:/b:/conf"}})),
              (QStringList{u"/conf/autostart"_s, u"/b/autostart"_s, u"/c/autostart"_s}));
    EXPECT_EQ(autostartFolders(environmentOf({{"HOME", "/home/u"}, {"XDG_CONFIG_DIRS", ""}})),
              (QStringList{u"/home/u/.config/autostart"_s, u"/etc/xdg/autostart"_s}));
}

TEST_F(AutostartLoginItemTest, EnablingWritesAnEntryAndDisablingRemovesIt) {
    EXPECT_FALSE(item_.isEnabled());
    item_.enable();
    EXPECT_TRUE(item_.isEnabled());
    EXPECT_EQ(files_.file(own), autostartEntryFor(u"/opt/a b/amberquill"_s));
    item_.disable();
    EXPECT_FALSE(item_.isEnabled());
    EXPECT_EQ(files_.file(own), std::nullopt);
}

TEST_F(AutostartLoginItemTest, AnEntryOfTheSystemStartsUnlessTheUserHasAHiddenOne) {
    files_.addFile(systems, autostartEntryFor(u"/usr/bin/amberquill"_s));
    EXPECT_TRUE(item_.isEnabled());
    item_.enable();
    EXPECT_EQ(files_.file(own), std::nullopt) << "it starts already";
    item_.disable();
    EXPECT_FALSE(item_.isEnabled());
    EXPECT_EQ(files_.file(own), hiddenAutostartEntry());
    item_.enable();
    EXPECT_TRUE(item_.isEnabled());
}

TEST_F(AutostartLoginItemTest, EntriesOfOtherToolsAreRead) {
    item_.enable();
    files_.addFile(own, *files_.file(own) + "X-GNOME-Autostart-enabled=false\n");
    EXPECT_FALSE(item_.isEnabled());
    item_.enable();
    EXPECT_TRUE(item_.isEnabled());
    files_.addFile(own, "broken");
    EXPECT_FALSE(item_.isEnabled());
    item_.enable();
    EXPECT_TRUE(item_.isEnabled());
}

TEST_F(AutostartLoginItemTest, ABrokenEntryOfTheUserOverridesTheSystems) {
    files_.addFile(systems, autostartEntryFor(u"/usr/bin/amberquill"_s));
    files_.addFile(own, "broken");
    EXPECT_FALSE(item_.isEnabled());
}

TEST_F(AutostartLoginItemTest, AFailedWriteIsSilent) {
    files_.refuseWrites(true);
    testing::internal::CaptureStderr();
    item_.enable();
    item_.disable();
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_FALSE(item_.isEnabled());
}

TEST(AutostartLoginItem, WorksOnARealDiskInAMissingFolder) {
    const TemporaryTree tree;
    PosixFileSystem files;
    AutostartLoginItem item(files, {{tree.path("config/autostart")}, u"/usr/bin/amberquill"_s, {}});
    item.enable();
    EXPECT_TRUE(item.isEnabled());
    item.disable();
    EXPECT_FALSE(item.isEnabled());
    EXPECT_FALSE(std::filesystem::exists(tree.at("config/autostart/org.amberquill.Amberquill.desktop")));
}
