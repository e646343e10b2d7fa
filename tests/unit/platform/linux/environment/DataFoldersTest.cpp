#include "platform/linux/environment/BaseFolders.h"

#include "support/FixedEnvironment.h"

#include <gtest/gtest.h>

using namespace amberquill;
using namespace amberquill::desktop;
using namespace Qt::StringLiterals;

namespace {

QStringList foldersOf(std::map<std::string, QByteArray> variables) {
    variables.try_emplace("HOME", "/home/u");
    return dataFoldersFromEnvironment(environmentOf(std::move(variables))).folders;
}

const QStringList flatpakAndSnap{u"/home/u/.local/share/flatpak/exports/share"_s,
                                 u"/var/lib/flatpak/exports/share"_s, u"/var/lib/snapd/desktop"_s};

} // namespace

TEST(DataFolders, UnsetVariablesMeanTheDefaults) {
    const QStringList defaults =
        QStringList{u"/home/u/.local/share"_s, u"/usr/local/share"_s, u"/usr/share"_s} + flatpakAndSnap;
    EXPECT_EQ(foldersOf({}), defaults);
}

TEST(DataFolders, EmptyVariablesMeanTheDefaultsToo) {
    EXPECT_EQ(foldersOf({{"XDG_DATA_HOME", ""}, {"XDG_DATA_DIRS", ""}}), foldersOf({}));
}

TEST(DataFolders, TheUsersFolderComesFirstAndTheListKeepsItsOrder) {
    EXPECT_EQ(foldersOf({{"XDG_DATA_HOME", "/own"}, {"XDG_DATA_DIRS", "/b:/a"}}),
              (QStringList{u"/own"_s, u"/b"_s, u"/a"_s, u"/own/flatpak/exports/share"_s,
                           u"/var/lib/flatpak/exports/share"_s, u"/var/lib/snapd/desktop"_s}));
}

TEST(DataFolders, RelativeAndEmptyPartsAreIgnored) {
    EXPECT_EQ(foldersOf({{"XDG_DATA_DIRS", ":relative:./here::/a:"}}),
              (QStringList{u"/home/u/.local/share"_s, u"/a"_s} + flatpakAndSnap));
}

TEST(DataFolders, RepetitionsAndTrailingSlashesAreRemoved) {
    EXPECT_EQ(foldersOf({{"XDG_DATA_DIRS", "/usr/share/:/a//b/:/usr/share:/home/u/.local/share/"}}),
              (QStringList{u"/home/u/.local/share"_s, u"/usr/share"_s, u"/a/b"_s} + flatpakAndSnap));
}

TEST(DataFolders, FlatpakAndSnapKeepTheirPlacesInTheVariable) {
    EXPECT_EQ(
        foldersOf({{"XDG_DATA_DIRS", "/var/lib/snapd/desktop:/var/lib/flatpak/exports/share/:/usr/share"}}),
        (QStringList{u"/home/u/.local/share"_s, u"/var/lib/snapd/desktop"_s,
                     u"/var/lib/flatpak/exports/share"_s, u"/usr/share"_s,
                     u"/home/u/.local/share/flatpak/exports/share"_s}));
}

TEST(DataFolders, BelowNamesTheSameFolderInEach) {
    const DataFolders folders{{u"/a"_s, u"/"_s, u"/b"_s}};
    EXPECT_EQ(folders.below(u"applications"),
              (QStringList{u"/a/applications"_s, u"/applications"_s, u"/b/applications"_s}));
}
