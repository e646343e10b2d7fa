#include "views/TileModel.h"

#include "motion/Animated.h"
#include "motion/Animation.h"
#include "motion/Animations.h"
#include "support/ModelFixture.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <algorithm>
#include <random>

using namespace amberquill;
using namespace Qt::StringLiterals;

namespace {

class TileModelTest : public ModelFixture {
protected:
    LauncherModel& presentedWith(int count) {
        LauncherModel& model = shownWith(count);
        tiles_ = std::make_unique<TileModel>(model, queue_);
        tester_ = std::make_unique<QAbstractItemModelTester>(
            tiles_.get(), QAbstractItemModelTester::FailureReportingMode::Fatal);
        model.setPresented(true);
        settle();
        QObject::connect(tiles_.get(), &QAbstractItemModel::rowsInserted, tiles_.get(),
                         [this](const QModelIndex&, int first, int last) { note(u"+%1-%2"_s, first, last); });
        QObject::connect(tiles_.get(), &QAbstractItemModel::rowsRemoved, tiles_.get(),
                         [this](const QModelIndex&, int first, int last) { note(u"-%1-%2"_s, first, last); });
        QObject::connect(tiles_.get(), &QAbstractItemModel::rowsMoved, tiles_.get(),
                         [this](const QModelIndex&, int first, int, const QModelIndex&, int to) {
                             note(u"%1>%2"_s, first, to);
                         });
        return model;
    }

    void TearDown() override {
        tester_.reset();
        tiles_.reset();
        ModelFixture::TearDown();
    }

    void note(const QString& form, int a, int b) { changes_.append(form.arg(a).arg(b)); }
    // Long enough to make and drop all rows that are made and dropped at rest.
    void settle() { queue_.advance(0.5); }

    [[nodiscard]] QStringList ids() const {
        QStringList result;
        for (int row = 0; row < tiles_->rowCount(); ++row) {
            result.append(tiles_->index(row).data(TileModel::ItemIdRole).toString());
        }
        return result;
    }

    [[nodiscard]] QStringList wantedIds() const {
        QStringList result;
        for (const VisibleEntry& entry : model_->visibleEntries()) {
            result.append(entry.item.id());
        }
        return result;
    }

    std::unique_ptr<TileModel> tiles_;
    std::unique_ptr<QAbstractItemModelTester> tester_;
    QStringList changes_;
};

} // namespace

TEST_F(TileModelTest, AtRestTheRowsAreTheVisibleEntries) {
    LauncherModel& model = presentedWith(200);
    EXPECT_EQ(ids(), wantedIds());
    model.goToPage(3);
    settle();
    EXPECT_EQ(ids(), wantedIds());
    EXPECT_EQ(ids().size(), 105);
}

TEST_F(TileModelTest, ATilesPlaceOnTheStripIsItsCentreOnThePage) {
    LauncherModel& model = presentedWith(200);
    model.goToPage(2);
    settle();
    const std::vector<VisibleEntry> entries = model.visibleEntries();
    ASSERT_EQ(entries.size(), static_cast<std::size_t>(tiles_->rowCount()));
    const double stripStart = -model.page() * model.size().width();
    for (std::size_t i = 0; i < entries.size(); ++i) {
        const QPointF place = tiles_->index(static_cast<int>(i)).data(TileModel::PlaceRole).toPointF();
        const QRectF rect = model.metrics().tileRect(entries[i].center);
        EXPECT_NEAR(place.x() + stripStart, rect.left(), 0.5);
        EXPECT_NEAR(place.y(), rect.top(), 0.5);
    }
}

TEST_F(TileModelTest, TilesHaveANameAndAPath) {
    presentedWith(3);
    const QModelIndex first = tiles_->index(0);
    EXPECT_EQ(first.data(TileModel::NameRole), u"App 1"_s);
    EXPECT_EQ(first.data(TileModel::PathRole), path(1));
    EXPECT_EQ(first.data(TileModel::IsFolderRole), false);
}

TEST_F(TileModelTest, AFolderHasItsApplications) {
    const Folder folder{QUuid::createUuid(), u"F"_s, {path(1), path(2)}};
    files_.addFile(layoutPath, encodeItems({LaunchItem::folder(folder)}));
    presentedWith(2);
    const QModelIndex first = tiles_->index(0);
    EXPECT_EQ(first.data(TileModel::IsFolderRole), true);
    EXPECT_EQ(first.data(TileModel::AppPathsRole).toStringList(), folder.apps);
    EXPECT_EQ(first.data(TileModel::NameRole), u"F"_s);
}

TEST_F(TileModelTest, RowsAreMadeAndDroppedOnlyAfterThePagesHaveMoved) {
    LauncherModel& model = presentedWith(200);
    // Moves with the page turn.
    Animated strip;
    strip.setTarget(0);
    QObject::connect(&model, &LauncherModel::pageChanged, [&] { strip.setTarget(-1500.0 * model.page()); });
    model.turnToPage(1);
    settle();
    EXPECT_TRUE(changes_.isEmpty()) << changes_.join(u' ').toStdString();
    queue_.advance(0.01);
    Timeline::shared().advance();
    queue_.advance(3);
    Timeline::shared().advance();
    ASSERT_TRUE(Timeline::shared().isIdle());
    settle();
    EXPECT_EQ(changes_,
              (QStringList{u"+70-75"_s, u"+76-81"_s, u"+82-87"_s, u"+88-93"_s, u"+94-99"_s, u"+100-104"_s}))
        << "a few at a time";
    EXPECT_EQ(ids(), wantedIds());
}

TEST_F(TileModelTest, MotionThatBeginsWhileANeighbourIsMadeKeepsItsRows) {
    LauncherModel& model = presentedWith(200);
    model.goToPage(2);
    // Only some tiles of the next page are made.
    queue_.advance(3 * 0.016);
    ASSERT_GT(ids().size(), 70);
    ASSERT_LT(ids().size(), 105);
    changes_.clear();
    Animated strip;
    strip.setTarget(0);
    QObject::connect(&model, &LauncherModel::pageChanged, [&] { strip.setTarget(-1500.0 * model.page()); });
    model.turnToPage(1);
    settle();
    EXPECT_TRUE(changes_.isEmpty()) << changes_.join(u' ').toStdString();
    // Turning to the page that was begun makes the rest of its tiles at once.
    model.turnToPage(3);
    EXPECT_EQ(ids().size(), 105);
    queue_.advance(0.01);
    Timeline::shared().advance();
    queue_.advance(3);
    Timeline::shared().advance();
    settle();
    EXPECT_EQ(ids(), wantedIds());
}

TEST_F(TileModelTest, PagesFarBehindAreDroppedWhileMoreAreTurned) {
    LauncherModel& model = presentedWith(30 * 35);
    Animated strip;
    strip.setTarget(0);
    QObject::connect(&model, &LauncherModel::pageChanged, [&] { strip.setTarget(-1500.0 * model.page()); });
    for (int page = 1; page < 30; ++page) {
        model.turnToPage(page);
        settle();
        ASSERT_LE(tiles_->rowCount(), 8 * 35) << "at page " << page;
        const QStringList there = ids();
        for (int recent = std::max(page - 5, 0); recent <= page; ++recent) {
            ASSERT_TRUE(there.contains(model.items()[static_cast<std::size_t>(recent) * 35].id()))
                << "page " << recent << " may still be seen at page " << page;
        }
    }
}

TEST_F(TileModelTest, APageFarBehindAfterOneTurnStaysUntilAllRests) {
    LauncherModel& model = presentedWith(30 * 35);
    Animated strip;
    strip.setTarget(0);
    QObject::connect(&model, &LauncherModel::pageChanged, [&] { strip.setTarget(-1500.0 * model.page()); });
    model.turnToPage(25);
    settle();
    EXPECT_TRUE(ids().contains(model.items()[0].id()));
}

TEST_F(TileModelTest, AHiddenLauncherDropsOtherPagesWhenAsked) {
    LauncherModel& model = presentedWith(200);
    Animated strip;
    strip.setTarget(0);
    QObject::connect(&model, &LauncherModel::pageChanged, [&] { strip.setTarget(-1500.0 * model.page()); });
    model.turnToPage(4);
    model.setPresented(false);
    settle();
    ASSERT_TRUE(ids().contains(model.items()[0].id()));
    tiles_->dropPagesLeftBehind();
    EXPECT_FALSE(ids().contains(model.items()[0].id()));
    EXPECT_TRUE(ids().contains(model.items()[4 * 35].id())) << "the page shown is shown next";
}

TEST_F(TileModelTest, ANewPageIsMadeAtOnceAndTheOldOnesStayWhileTheyMayBeSeen) {
    LauncherModel& model = presentedWith(200);
    Animated strip;
    strip.setTarget(0);
    QObject::connect(&model, &LauncherModel::pageChanged, [&] { strip.setTarget(-1500.0 * model.page()); });
    model.turnToPage(4);
    EXPECT_EQ(changes_, QStringList{u"+70-104"_s});
    EXPECT_EQ(ids().first(), u"a:"_s + path(1));
    EXPECT_EQ(ids().last(), u"a:"_s + path(175));
    queue_.advance(0.01);
    Timeline::shared().advance();
    queue_.advance(3);
    Timeline::shared().advance();
    settle();
    EXPECT_EQ(ids(), wantedIds());
}

TEST_F(TileModelTest, ARemovedAppIsOneRemoval) {
    LauncherModel& model = presentedWith(20);
    std::vector<AppInfo> fewer = apps(20);
    fewer.erase(fewer.begin() + 4);
    model.applyScan(fewer);
    EXPECT_EQ(changes_, QStringList{u"-4-4"_s});
    EXPECT_EQ(ids(), wantedIds());
}

TEST_F(TileModelTest, NewAppsAreOneInsertion) {
    LauncherModel& model = presentedWith(20);
    model.applyScan(apps(23));
    EXPECT_EQ(changes_, QStringList{u"+20-22"_s});
}

TEST_F(TileModelTest, AnAppThatComesBackIsInsertedWhereItStood) {
    LauncherModel& model = presentedWith(6);
    std::vector<AppInfo> without = apps(6);
    without.erase(without.begin());
    model.applyScan(without);
    model.applyScan(apps(6));
    EXPECT_EQ(changes_, (QStringList{u"-0-0"_s, u"+0-0"_s}));
    EXPECT_EQ(ids().first(), u"a:"_s + path(1));
}

TEST_F(TileModelTest, ARenamedAppIsADataChangeOfItsRowAlone) {
    LauncherModel& model = presentedWith(3);
    QSignalSpy changed(tiles_.get(), &QAbstractItemModel::dataChanged);
    model.applyScan({{path(1), u"App 1"_s}, {path(2), u"Other"_s}, {path(3), u"App 3"_s}});
    ASSERT_EQ(changed.count(), 1);
    EXPECT_EQ(changed[0][0].toModelIndex().row(), 1);
    EXPECT_TRUE(changes_.isEmpty());
    EXPECT_EQ(tiles_->index(1).data(TileModel::NameRole), u"Other"_s);
}

TEST_F(TileModelTest, ThePressedTileIsADataChangeOfItsRowAlone) {
    LauncherModel& model = presentedWith(3);
    QSignalSpy changed(tiles_.get(), &QAbstractItemModel::dataChanged);
    press(model.metrics().cellCenter(2));
    ASSERT_EQ(changed.count(), 1);
    EXPECT_EQ(changed[0][0].toModelIndex().row(), 2);
    EXPECT_EQ(tiles_->index(2).data(TileModel::PressedRole), true);
}

TEST_F(TileModelTest, ItIsEmptyBeforeTheContentHasASize) {
    installed_ = apps(3);
    LauncherModel& model = makeModel();
    const TileModel tiles(model, queue_);
    model.refreshApps();
    queue_.runPosted();
    EXPECT_EQ(tiles.rowCount(), 0);
    model.setSize({1500, 892});
    EXPECT_EQ(tiles.rowCount(), 3);
}

TEST_F(TileModelTest, TheRowsFollowRandomChanges) {
    std::mt19937 random(7);
    LauncherModel& model = presentedWith(60);
    for (int round = 0; round < 300; ++round) {
        std::vector<AppInfo> some;
        for (const AppInfo& app : apps(60)) {
            if (random() % 4 != 0) {
                some.push_back(app);
            }
        }
        // Applications that come back are appended, in a new order of names each time.
        std::shuffle(some.begin(), some.end(), random);
        for (std::size_t i = 0; i < some.size(); ++i) {
            some[i].name = QString::number(i);
        }
        model.applyScan(some);
        model.goToPage(static_cast<int>(random() % 2));
        settle();
        ASSERT_EQ(ids(), wantedIds()) << round;
    }
}

TEST_F(TileModelTest, TilesFollowTheSearchAndFoundTilesAreKept) {
    LauncherModel& model = presentedWith(36);
    changes_.clear();
    model.setSearchText(u"App 3"_s);
    EXPECT_EQ(ids(), wantedIds());
    EXPECT_EQ(ids().size(), 8);
    EXPECT_EQ(changes_.filter(u"+"_s), QStringList()) << "none is made anew";
    model.setSearchText(u"App 35"_s);
    EXPECT_EQ(ids(), QStringList{LaunchItem::app(path(35)).id()});
    model.setSearchText({});
    settle();
    EXPECT_EQ(ids(), wantedIds());
}

TEST_F(TileModelTest, ADuplicateIdentityIsDrawnOnceOnWhicheverPagesItStands) {
    const LaunchItem twice = LaunchItem::folder({QUuid::createUuid(), u"Twice"_s, {}});
    LaunchItems items;
    for (int i = 1; i <= 110; ++i) {
        items.push_back(i == 3 || i == 5 || i == 80 ? twice : LaunchItem::app(path(i)));
    }
    files_.addFile(layoutPath, encodeItems(items));
    LauncherModel& model = presentedWith(110);
    for (const int page : {1, 2, 0, 2, 1}) {
        model.goToPage(page);
        settle();
        EXPECT_LE(ids().count(twice.id()), 1) << page;
        const QStringList shown = ids();
        const QStringList wanted = wantedIds();
        EXPECT_EQ(QSet<QString>(shown.begin(), shown.end()), QSet<QString>(wanted.begin(), wanted.end()));
    }
}
