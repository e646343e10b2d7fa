#include "data/PlaceMemory.h"

#include "data/LayoutReconciler.h"
#include "data/NameOrder.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <random>

using namespace amberquill;
using namespace Qt::StringLiterals;

namespace {

QString placePath(const QString& name) {
    return u"/Applications/"_s + name + u".app"_s;
}

LaunchItem appNamed(const QString& name) {
    return LaunchItem::app(placePath(name));
}

// A layout, the installed applications and a memory, as in the launcher.
class PlaceMemoryTest : public testing::Test {
protected:
    using Names = QStringList;

    // Applications of these names are installed, in this order.
    void install(const Names& names) {
        installed_.clear();
        for (const QString& name : names) {
            installed_.push_back({placePath(name), name});
        }
    }

    void scan() {
        const LaunchItems before = memory_.putBack(items_, installed_);
        items_ = LayoutReconciler::reconcile(before, installed_, std::nullopt, order_);
        memory_.remember(before, items_, now_);
    }

    void scan(const Names& names) {
        install(names);
        scan();
    }

    // The layout as names, "Folder(a b)" for a folder.
    [[nodiscard]] QString layout() const {
        Names texts;
        for (const LaunchItem& item : items_) {
            if (const QString* path = item.asApp()) {
                texts.append(nameFromPath(*path));
                continue;
            }
            Names members;
            for (const QString& member : item.asFolder()->apps) {
                members.append(nameFromPath(member));
            }
            texts.append(item.asFolder()->name + u'(' + members.join(u' ') + u')');
        }
        return texts.join(u' ');
    }

    [[nodiscard]] static LaunchItem folderOf(const QString& name, const Names& members) {
        Folder folder{QUuid::createUuid(), name, {}};
        for (const QString& member : members) {
            folder.apps.append(placePath(member));
        }
        return LaunchItem::folder(std::move(folder));
    }

    LaunchItems items_;
    std::vector<AppInfo> installed_;
    PlaceMemory memory_;
    PlaceMemory::Date now_{std::chrono::days(20000)};
    NameOrder order_;
};

} // namespace

TEST_F(PlaceMemoryTest, AReturningApplicationGetsItsPlaceAgain) {
    items_ = {appNamed(u"c"_s), appNamed(u"b"_s), appNamed(u"a"_s)};
    scan({u"a"_s, u"c"_s});
    EXPECT_EQ(layout(), u"c a");
    scan({u"a"_s, u"b"_s, u"c"_s});
    EXPECT_EQ(layout(), u"c b a");
}

TEST_F(PlaceMemoryTest, AReturningApplicationGetsItsPlaceInItsFolderAgain) {
    items_ = {folderOf(u"Games"_s, {u"z"_s, u"y"_s, u"x"_s}), appNamed(u"a"_s)};
    scan({u"a"_s, u"x"_s, u"z"_s});
    EXPECT_EQ(layout(), u"Games(z x) a");
    scan({u"a"_s, u"x"_s, u"y"_s, u"z"_s});
    EXPECT_EQ(layout(), u"Games(z y x) a");
}

TEST_F(PlaceMemoryTest, ARemovedFolderIsMadeAgainWithItsNameAndId) {
    items_ = {appNamed(u"a"_s), folderOf(u"Games"_s, {u"y"_s, u"x"_s}), appNamed(u"b"_s)};
    const QUuid id = items_[1].asFolder()->id;
    scan({u"a"_s, u"b"_s, u"x"_s});
    // The user drags the last application out: the folder is dissolved.
    items_ = {appNamed(u"a"_s), appNamed(u"x"_s), appNamed(u"b"_s)};
    scan({u"a"_s, u"b"_s, u"x"_s, u"y"_s});
    EXPECT_EQ(layout(), u"a Games(y) x b");
    EXPECT_EQ(items_[1].asFolder()->id, id);
}

TEST_F(PlaceMemoryTest, ARenamedFolderKeepsItsNewName) {
    items_ = {folderOf(u"Games"_s, {u"y"_s, u"x"_s})};
    scan({u"x"_s});
    items_ = {LaunchItem::folder({items_[0].asFolder()->id, u"Play"_s, {placePath(u"x"_s)}})};
    scan({u"x"_s, u"y"_s});
    EXPECT_EQ(layout(), u"Play(y x)");
}

TEST_F(PlaceMemoryTest, TheLayoutIsTheSameAfterApplicationsWentAndReturnedInAnyOrder) {
    std::mt19937 random(7); // NOLINT(cert-msc51-cpp): the same layouts each time
    const auto below = [&random](qsizetype end) {
        return static_cast<qsizetype>(random() % static_cast<unsigned long>(end));
    };
    for (int round = 0; round < 300; ++round) {
        Names all;
        items_.clear();
        for (qsizetype item = below(12); item >= 0; --item) {
            Names members;
            for (qsizetype member = below(6); member > 0; --member) {
                members.append(QString::number(all.size() + 100));
                all.append(members.last());
            }
            if (members.size() == 1) {
                items_.push_back(appNamed(members.first()));
            } else {
                items_.push_back(folderOf(u"F"_s, members));
            }
        }
        memory_.clear();
        const LaunchItems original = items_;
        for (int scans = 0; scans < 6; ++scans) {
            Names some = all;
            some.removeIf([&](const QString&) { return random() % 2 == 0; });
            scan(some);
        }
        scan(all);
        ASSERT_EQ(items_, original) << "round " << round << ": " << layout().toStdString();
        ASSERT_TRUE(memory_.remembered().empty());
    }
}

TEST_F(PlaceMemoryTest, TheUsersChangesStay) {
    items_ = {appNamed(u"a"_s), appNamed(u"b"_s), appNamed(u"c"_s), appNamed(u"d"_s)};
    scan({u"a"_s, u"c"_s, u"d"_s});
    items_ = {appNamed(u"d"_s), appNamed(u"c"_s), appNamed(u"a"_s)};
    scan({u"a"_s, u"b"_s, u"c"_s, u"d"_s});
    EXPECT_EQ(layout(), u"d c a b") << "after its previous neighbour";
}

TEST_F(PlaceMemoryTest, WithoutNeighboursAnApplicationReturnsToItsIndex) {
    items_ = {appNamed(u"a"_s), appNamed(u"b"_s), appNamed(u"c"_s)};
    scan({u"a"_s, u"c"_s});
    items_ = {appNamed(u"x"_s), appNamed(u"y"_s), appNamed(u"z"_s)};
    scan({u"b"_s, u"x"_s, u"y"_s, u"z"_s});
    EXPECT_EQ(layout(), u"x b y z");
}

TEST_F(PlaceMemoryTest, AnApplicationReturningElsewhereIsRecognisedByItsFileName) {
    items_ = {appNamed(u"b"_s), appNamed(u"a"_s)};
    scan({u"a"_s});
    installed_.push_back({u"/home/me/Applications/b.app"_s, u"b"_s});
    scan();
    EXPECT_EQ(items_, (LaunchItems{LaunchItem::app(u"/home/me/Applications/b.app"_s), appNamed(u"a"_s)}));
    EXPECT_TRUE(memory_.remembered().empty());
}

TEST_F(PlaceMemoryTest, AMovedApplicationIsNotRemembered) {
    items_ = {appNamed(u"b"_s), appNamed(u"a"_s)};
    installed_ = {{u"/home/me/Applications/b.app"_s, u"b"_s}, {placePath(u"a"_s), u"a"_s}};
    scan();
    EXPECT_EQ(items_, (LaunchItems{LaunchItem::app(u"/home/me/Applications/b.app"_s), appNamed(u"a"_s)}));
    EXPECT_TRUE(memory_.remembered().empty());
}

TEST_F(PlaceMemoryTest, TheNewPathOfAMovedApplicationIsNoReturn) {
    const LaunchItem other = LaunchItem::app(u"/opt/b.app"_s);
    items_ = {other, appNamed(u"a"_s)};
    scan({u"a"_s});
    ASSERT_EQ(memory_.remembered().size(), 1U);
    items_ = {appNamed(u"a"_s), appNamed(u"b"_s)};
    installed_ = {{placePath(u"a"_s), u"a"_s}, {u"/home/me/b.app"_s, u"b"_s}};
    scan();
    EXPECT_EQ(items_, (LaunchItems{appNamed(u"a"_s), LaunchItem::app(u"/home/me/b.app"_s)}));
}

TEST_F(PlaceMemoryTest, MovedNeighboursAreStillNeighbours) {
    items_ = {appNamed(u"x"_s), appNamed(u"a"_s), appNamed(u"b"_s), appNamed(u"y"_s)};
    scan({u"x"_s, u"y"_s});
    installed_.push_back({u"/opt/a.app"_s, u"a"_s});
    scan();
    items_ = {items_[2], items_[1], items_[0]}; // y a x
    installed_.push_back({placePath(u"b"_s), u"b"_s});
    scan();
    EXPECT_EQ(layout(), u"y a b x");
}

TEST_F(PlaceMemoryTest, APlaceIsForgottenAfterNinetyDays) {
    items_ = {appNamed(u"b"_s), appNamed(u"a"_s)};
    scan({u"a"_s});
    const auto kept = memory_.remembered();
    EXPECT_EQ(PlaceMemory(kept, now_ + PlaceMemory::longest).remembered(), kept);
    EXPECT_TRUE(
        PlaceMemory(kept, now_ + PlaceMemory::longest + std::chrono::seconds(1)).remembered().empty());
}

TEST_F(PlaceMemoryTest, AWrongClockDoesNotKeepAPlaceForever) {
    items_ = {appNamed(u"b"_s), appNamed(u"a"_s)};
    now_ += std::chrono::days(3650);
    scan({u"a"_s});
    const PlaceMemory later(memory_.remembered(), now_ - std::chrono::days(3650));
    ASSERT_EQ(later.remembered().size(), 1U);
    EXPECT_EQ(later.remembered()[0].since, now_ - std::chrono::days(3650));
}

TEST_F(PlaceMemoryTest, TheOldestOfTooManyPlacesAreForgotten) {
    for (std::size_t i = 0; i < PlaceMemory::mostApplications; ++i) {
        items_.push_back(appNamed(u"early%1"_s.arg(i)));
    }
    scan({});
    now_ += std::chrono::seconds(1);
    items_ = {appNamed(u"late1"_s), appNamed(u"late2"_s)};
    scan({});
    EXPECT_EQ(memory_.remembered().size(), PlaceMemory::mostApplications);
    scan({u"late1"_s, u"late2"_s});
    EXPECT_EQ(layout(), u"late1 late2");
}

TEST_F(PlaceMemoryTest, ThePlaceOfAnApplicationInTheLayoutIsForgotten) {
    items_ = {folderOf(u"Games"_s, {u"a"_s, u"b"_s}), appNamed(u"c"_s)};
    scan({u"b"_s, u"c"_s});
    const auto stale = memory_.remembered(); // as in a file that was not written since
    scan({u"a"_s, u"b"_s, u"c"_s});
    items_ = {appNamed(u"c"_s), appNamed(u"a"_s), folderOf(u"Other"_s, {u"b"_s})};
    memory_ = PlaceMemory(stale, now_);
    scan({u"b"_s, u"c"_s});
    scan({u"a"_s, u"b"_s, u"c"_s});
    EXPECT_EQ(layout(), u"c a Other(b)");
}

TEST_F(PlaceMemoryTest, ContradictoryPlacesAreHarmless) {
    const auto place = [](const QString& id, const QString& after, const QString& before) {
        return RememberedItem{.id = id, .after = after, .before = before, .index = -7};
    };
    const QString a = appItemId(placePath(u"a"_s));
    const QString b = appItemId(placePath(u"b"_s));
    RememberedItem homeless = place(appItemId(placePath(u"c"_s)), {}, {});
    homeless.folder = QUuid::createUuid();
    memory_ = PlaceMemory({place(a, b, a), place(b, a, b), place(a, a, a), homeless}, PlaceMemory::Date{});
    scan({u"a"_s, u"b"_s, u"c"_s});
    Names names = layout().split(u' ');
    std::sort(names.begin(), names.end());
    EXPECT_EQ(names, (Names{u"a"_s, u"b"_s, u"c"_s}));
}
