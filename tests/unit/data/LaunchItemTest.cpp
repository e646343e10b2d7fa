#include "data/LaunchItem.h"

#include <QSet>
#include <gtest/gtest.h>

using namespace amberquill;
using namespace Qt::StringLiterals;

namespace {

const QUuid chess = QUuid::fromString(u"3f2504e0-4f89-11d3-9a0c-0305e82c3301"_s);
const QUuid draughts = QUuid::fromString(u"3f2504e0-4f89-11d3-9a0c-0305e82c3302"_s);

} // namespace

TEST(LaunchItem, AnAppIsIdentifiedByItsPath) {
    EXPECT_EQ(LaunchItem::app(u"/Applications/Calculator.app"_s).id(), u"a:/Applications/Calculator.app"_s);
}

TEST(LaunchItem, AFolderIsIdentifiedByItsUuidInUpperCase) {
    EXPECT_EQ(LaunchItem::folder({chess, u"Games"_s, {}}).id(), u"f:3F2504E0-4F89-11D3-9A0C-0305E82C3301"_s);
}

TEST(LaunchItem, AnAppAndAFolderNeverShareAnId) {
    const QString uuidText = canonicalText(chess);
    EXPECT_NE(LaunchItem::app(uuidText).id(), LaunchItem::folder({chess, {}, {}}).id());
}

TEST(LaunchItem, FoldersWithDifferentIdsDiffer) {
    const LaunchItem one = LaunchItem::folder({chess, u"Games"_s, {u"/a.app"_s}});
    const LaunchItem two = LaunchItem::folder({draughts, u"Games"_s, {u"/a.app"_s}});
    EXPECT_NE(one, two);
    EXPECT_NE(one.id(), two.id());
}

TEST(LaunchItem, EqualityComparesWholePayloads) {
    EXPECT_EQ(LaunchItem::app(u"/a.app"_s), LaunchItem::app(u"/a.app"_s));
    EXPECT_NE(LaunchItem::app(u"/a.app"_s), LaunchItem::app(u"/A.app"_s));
    EXPECT_NE(LaunchItem::folder({chess, u"Games"_s, {u"/a.app"_s, u"/b.app"_s}}),
              LaunchItem::folder({chess, u"Games"_s, {u"/b.app"_s, u"/a.app"_s}}));
    EXPECT_NE(LaunchItem::folder({chess, u"Games"_s, {}}), LaunchItem::folder({chess, u"Play"_s, {}}));
}

TEST(LaunchItem, EqualItemsHaveEqualHashes) {
    const QSet<LaunchItem> items = {
        LaunchItem::app(u"/a.app"_s),
        LaunchItem::app(u"/a.app"_s),
        LaunchItem::app(u"/b.app"_s),
        LaunchItem::folder({chess, u"Games"_s, {u"/a.app"_s}}),
        LaunchItem::folder({chess, u"Games"_s, {u"/a.app"_s}}),
        LaunchItem::folder({chess, u"Games"_s, {}}),
    };
    EXPECT_EQ(items.size(), 4);
}

TEST(AppInfo, TheSamePathWithAnotherNameIsNotEqual) {
    const AppInfo one{u"/a.app"_s, u"One"_s};
    EXPECT_EQ(one, (AppInfo{u"/a.app"_s, u"One"_s}));
    EXPECT_NE(one, (AppInfo{u"/a.app"_s, u"Two"_s}));
    EXPECT_NE(qHash(one), qHash(AppInfo{u"/a.app"_s, u"Two"_s}));
}

TEST(NameFromPath, IsTheLastComponentWithoutTheExtension) {
    EXPECT_EQ(nameFromPath(u"/Applications/Calculator.app"_s), u"Calculator"_s);
    EXPECT_EQ(nameFromPath(u"/usr/share/applications/org.example.Notes.desktop"_s), u"org.example.Notes"_s);
    EXPECT_EQ(nameFromPath(u"/Applications/Plain"_s), u"Plain"_s);
    EXPECT_EQ(nameFromPath(u".hidden"_s), u".hidden"_s);
    EXPECT_EQ(nameFromPath(u"/Applications/Calculator.app//"_s), u"Calculator"_s);
    EXPECT_EQ(nameFromPath(u"/"_s), QString());
    EXPECT_EQ(nameFromPath(QString()), QString());
}
