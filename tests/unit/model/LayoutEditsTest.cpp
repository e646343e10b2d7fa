#include "model/LayoutEdits.h"

#include <gtest/gtest.h>

using namespace amberquill;
using namespace Qt::StringLiterals;

namespace {

LaunchItem app(const QString& path) {
    return LaunchItem::app(path);
}

LaunchItems appsNamed(const QString& letters) {
    LaunchItems items;
    for (const QChar letter : letters) {
        items.push_back(app(letter));
    }
    return items;
}

const QUuid games(u"3F2504E0-4F89-11D3-9A0C-0305E82C3301"_s);

LaunchItem folderOf(const QStringList& apps) {
    return LaunchItem::folder({games, u"Games"_s, apps});
}

} // namespace

TEST(LayoutEdits, AnItemIsFoundByItsIdentity) {
    const LaunchItems items = {app(u"f:a"_s), folderOf({u"b"_s}), app(u"b"_s)};
    EXPECT_EQ(LayoutEdits::indexOf(items, u"a:f:a"_s), 0U);
    EXPECT_EQ(LayoutEdits::indexOf(items, u"f:3F2504E0-4F89-11D3-9A0C-0305E82C3301"_s), 1U);
    EXPECT_EQ(LayoutEdits::indexOf(items, u"a:b"_s), 2U);
    EXPECT_EQ(LayoutEdits::indexOf(items, u"f:b"_s), std::nullopt);
    EXPECT_EQ(LayoutEdits::indexOf(items, u"f:3f2504e0-4f89-11d3-9a0c-0305e82c3301"_s), std::nullopt);
    EXPECT_EQ(LayoutEdits::indexOf(items, QString()), std::nullopt);
}

TEST(LayoutEdits, TheFirstFolderWithAnIdIsFoundAndAppsAreSkipped) {
    const LaunchItems items = {app(u"x"_s), folderOf({u"a"_s}), folderOf({u"b"_s})};
    EXPECT_EQ(LayoutEdits::folderIndex(items, games), 1U);
    EXPECT_EQ(LayoutEdits::folderIndex(items, QUuid::createUuid()), std::nullopt);
}

TEST(LayoutEdits, AMovedItemEndsAtItsNewIndexAndTheOthersKeepTheirOrder) {
    LaunchItems items = appsNamed(u"abcde"_s);
    LayoutEdits::move(items, 1, 3);
    EXPECT_EQ(items, appsNamed(u"acdbe"_s));
    LayoutEdits::move(items, 3, 1);
    EXPECT_EQ(items, appsNamed(u"abcde"_s));
    LayoutEdits::move(items, 0, 4);
    EXPECT_EQ(items, appsNamed(u"bcdea"_s));
    LayoutEdits::move(items, 4, 0);
    EXPECT_EQ(items, appsNamed(u"abcde"_s));
}

TEST(LayoutEdits, AMoveInAFolderLeavesTheRestAlone) {
    LaunchItems items = {app(u"x"_s), folderOf({u"a"_s, u"b"_s, u"c"_s})};
    LayoutEdits::moveInFolder(items, 1, 0, 2);
    EXPECT_EQ(items, (LaunchItems{app(u"x"_s), folderOf({u"b"_s, u"c"_s, u"a"_s})}));
    LayoutEdits::moveInFolder(items, 1, 2, 1);
    EXPECT_EQ(items, (LaunchItems{app(u"x"_s), folderOf({u"b"_s, u"a"_s, u"c"_s})}));
}

TEST(LayoutEdits, AnAppOnAnAppMakesAFolderOfTargetAndDragged) {
    LaunchItems items = appsNamed(u"abcd"_s);
    const auto made = LayoutEdits::merge(items, 0, u"a:c"_s, u"New Folder"_s);
    ASSERT_TRUE(made.has_value());
    const Folder expected{*made, u"New Folder"_s, {u"c"_s, u"a"_s}};
    EXPECT_EQ(items, (LaunchItems{app(u"b"_s), LaunchItem::folder(expected), app(u"d"_s)}));
    EXPECT_FALSE(made->isNull());
}

TEST(LayoutEdits, AnAppOnAFolderIsAppendedToIt) {
    LaunchItems items = {folderOf({u"x"_s}), app(u"a"_s), app(u"b"_s)};
    EXPECT_EQ(LayoutEdits::merge(items, 2, u"f:3F2504E0-4F89-11D3-9A0C-0305E82C3301"_s, u"New"_s),
              std::nullopt);
    EXPECT_EQ(items, (LaunchItems{folderOf({u"x"_s, u"b"_s}), app(u"a"_s)}));
}

TEST(LayoutEdits, WithoutATargetTheDraggedAppStaysWhereItWas) {
    LaunchItems items = appsNamed(u"abc"_s);
    EXPECT_EQ(LayoutEdits::merge(items, 1, u"a:gone"_s, u"New"_s), std::nullopt);
    EXPECT_EQ(LayoutEdits::merge(items, 1, u"a:b"_s, u"New"_s), std::nullopt);
    EXPECT_EQ(items, appsNamed(u"abc"_s));
}

TEST(LayoutEdits, AnAppPulledOutStandsBehindItsFolder) {
    LaunchItems items = {folderOf({u"a"_s, u"b"_s, u"c"_s}), app(u"x"_s)};
    EXPECT_EQ(LayoutEdits::pullOut(items, 0, u"b"_s), 1U);
    EXPECT_EQ(items, (LaunchItems{folderOf({u"a"_s, u"c"_s}), app(u"b"_s), app(u"x"_s)}));
}

TEST(LayoutEdits, AFolderLeftWithOneAppBecomesThatApp) {
    LaunchItems items = {app(u"x"_s), folderOf({u"a"_s, u"b"_s})};
    EXPECT_EQ(LayoutEdits::pullOut(items, 1, u"a"_s), 2U);
    EXPECT_EQ(items, appsNamed(u"xba"_s));
}

TEST(LayoutEdits, TheOnlyAppTakesItsFoldersPlace) {
    LaunchItems items = {app(u"x"_s), folderOf({u"a"_s}), app(u"y"_s)};
    EXPECT_EQ(LayoutEdits::pullOut(items, 1, u"a"_s), 1U);
    EXPECT_EQ(items, appsNamed(u"xay"_s));
}

TEST(LayoutEdits, EveryOccurrenceIsPulledOut) {
    LaunchItems items = {folderOf({u"a"_s, u"b"_s, u"a"_s, u"c"_s})};
    EXPECT_EQ(LayoutEdits::pullOut(items, 0, u"a"_s), 1U);
    EXPECT_EQ(items, (LaunchItems{folderOf({u"b"_s, u"c"_s}), app(u"a"_s)}));
}
