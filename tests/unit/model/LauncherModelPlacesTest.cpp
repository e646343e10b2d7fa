#include "data/LayoutFile.h"
#include "data/RememberedItem.h"
#include "localization/L.h"
#include "support/ModelFixture.h"

using namespace amberquill;
using namespace Qt::StringLiterals;

namespace {

class LauncherModelPlaces : public ModelFixture {
protected:
    static inline const QString placesPath = u"/data/Amberquill/places.json"_s;

    void SetUp() override {
        ModelFixture::SetUp();
        L::setLanguage(AppLanguage::English);
        queue_.setDate(std::chrono::sys_seconds(std::chrono::days(20000)));
        games_ = {QUuid::createUuid(), u"Games"_s, {path(5), path(2)}};
        arranged_ = {LaunchItem::app(path(4)), LaunchItem::folder(games_), LaunchItem::app(path(1)),
                     LaunchItem::app(path(3))};
    }
    void TearDown() override {
        ModelFixture::TearDown();
        L::setLanguage(AppLanguage::System);
    }

    // A running launcher with five applications, arranged by the user.
    LauncherModel& runningArranged() {
        files_.addFile(layoutPath, encodeItems(arranged_));
        LauncherModel& model = shownWith(5);
        EXPECT_EQ(model.items(), arranged_);
        return model;
    }

    // Starts the program again with the applications that are installed now.
    LauncherModel& startAgain() {
        queue_.runPosted();
        model_.reset();
        LauncherModel& model = makeModel();
        model.setSize({1500, 892});
        model.willShow();
        queue_.runPosted();
        return model;
    }

    void rescan() {
        model_->refreshApps();
        queue_.runPosted();
    }

    void uninstall(int number) {
        std::erase_if(installed_, [number](const AppInfo& app) { return app.path == path(number); });
    }

    [[nodiscard]] LaunchItems without(int number) const {
        LaunchItems items = arranged_;
        std::erase(items, LaunchItem::app(path(number)));
        return items;
    }

    Folder games_;
    LaunchItems arranged_;
};

QByteArray exchangeFile(const LaunchItems& items) {
    return encodeLayoutFile({.exportedAt = {}, .columns = 7, .rows = 5, .items = items});
}

} // namespace

TEST_F(LauncherModelPlaces, AnApplicationMissingForASecondStays) {
    LauncherModel& model = runningArranged();
    const int writes = files_.writes();
    uninstall(1);
    rescan();
    EXPECT_EQ(model.items(), arranged_);
    EXPECT_EQ(model.appName(path(1)), u"App 1");
    installed_ = apps(5);
    queue_.advance(1.2);
    rescan();
    queue_.advance(60);
    EXPECT_EQ(model.items(), arranged_);
    EXPECT_EQ(files_.writes(), writes);
}

TEST_F(LauncherModelPlaces, AMissingApplicationLeavesAfterFiveSeconds) {
    LauncherModel& model = runningArranged();
    uninstall(1);
    rescan();
    queue_.advance(4.9);
    EXPECT_EQ(model.items(), arranged_);
    queue_.advance(0.1);
    EXPECT_EQ(model.items(), without(1));
    EXPECT_EQ(queue_.timers(), 0U);
}

TEST_F(LauncherModelPlaces, ANewApplicationIsShownAtOnceWhileAMissingOneStays) {
    LauncherModel& model = runningArranged();
    installed_ = apps(6);
    uninstall(1);
    rescan();
    EXPECT_EQ(model.items().size(), arranged_.size() + 1);
    EXPECT_EQ(model.items().back(), LaunchItem::app(path(6)));
}

TEST_F(LauncherModelPlaces, AMissingApplicationLeavesAtTheStartAndReturnsToItsPlaceInTheNextRun) {
    runningArranged();
    installed_.clear();
    EXPECT_EQ(startAgain().items(), (LaunchItems{LaunchItem::folder({games_.id, games_.name, {}})}));
    installed_ = apps(5);
    EXPECT_EQ(startAgain().items(), arranged_);
}

TEST_F(LauncherModelPlaces, AFolderThatIsGoneIsMadeAgain) {
    LauncherModel& model = runningArranged();
    uninstall(5);
    rescan();
    queue_.advance(5);
    model.pullOut(path(2), games_.id);
    ASSERT_FALSE(model.folderIndex(games_.id));
    installed_ = apps(5);
    rescan();
    ASSERT_TRUE(model.folderIndex(games_.id));
    EXPECT_EQ(*model.folder(games_.id), (Folder{games_.id, u"Games"_s, {path(5)}}));
}

TEST_F(LauncherModelPlaces, ThePlacesAreWrittenBeforeTheLayout) {
    runningArranged();
    uninstall(1);
    rescan();
    files_.failWritesAfter(2); // the copy of the day, and the places
    queue_.advance(5);
    queue_.runPosted();
    EXPECT_TRUE(files_.file(placesPath));
    EXPECT_EQ(files_.file(layoutPath), encodeItems(arranged_));
}

TEST_F(LauncherModelPlaces, AProcessKilledAfterAReturnLosesNothing) {
    runningArranged();
    uninstall(1);
    startAgain();
    installed_ = apps(5);
    files_.refuseWrites(true);
    EXPECT_EQ(startAgain().items(), arranged_);
    files_.refuseWrites(false);
    EXPECT_EQ(startAgain().items(), arranged_);
}

TEST_F(LauncherModelPlaces, APlaceIsForgottenAfterNinetyDays) {
    runningArranged();
    uninstall(1);
    startAgain();
    installed_ = apps(5);
    queue_.setDate(queue_.date() + PlaceMemory::longest + std::chrono::seconds(1));
    EXPECT_EQ(startAgain().items().back(), LaunchItem::app(path(1)));
}

TEST_F(LauncherModelPlaces, WithoutALayoutThePlacesAreIgnored) {
    runningArranged();
    uninstall(2);
    startAgain();
    model_.reset();
    ASSERT_TRUE(files_.file(placesPath));
    files_.remove(layoutPath);
    installed_ = apps(5);
    const LaunchItems plain = {LaunchItem::app(path(1)), LaunchItem::app(path(2)), LaunchItem::app(path(3)),
                               LaunchItem::app(path(4)), LaunchItem::app(path(5))};
    EXPECT_EQ(startAgain().items(), plain);
}

TEST_F(LauncherModelPlaces, AFileOfPlacesThatCannotBeReadIsSetAside) {
    files_.addFile(placesPath, "not places");
    runningArranged();
    uninstall(1);
    startAgain();
    EXPECT_EQ(files_.file(placesPath + u".unreadable-1"_s), "not places");
    EXPECT_TRUE(decodePlaces(files_.file(placesPath).value_or(QByteArray())));
}

TEST_F(LauncherModelPlaces, AResetForgetsThePlaces) {
    LauncherModel& model = runningArranged();
    uninstall(2);
    rescan();
    queue_.advance(5);
    model.resetLayout();
    installed_ = apps(5);
    EXPECT_EQ(startAgain().items().back(), LaunchItem::app(path(2)));
    EXPECT_FALSE(model_->folderIndex(games_.id));
}

TEST_F(LauncherModelPlaces, AnImportedFilePlacesApplicationsInstalledLater) {
    LauncherModel& model = runningArranged();
    const QUuid tools = QUuid::createUuid();
    const LaunchItems imported = {
        LaunchItem::app(path(1)), LaunchItem::folder({tools, u"Tools"_s, {path(7), path(2)}}),
        LaunchItem::app(path(8)), LaunchItem::app(path(3)),
        LaunchItem::app(path(4)), LaunchItem::app(path(5))};
    EXPECT_FALSE(model.importLayout(exchangeFile(imported)));
    installed_ = apps(8);
    uninstall(6);
    rescan();
    EXPECT_EQ(model.items(), imported);
}

TEST_F(LauncherModelPlaces, AnImportForgetsEarlierPlaces) {
    LauncherModel& model = runningArranged();
    uninstall(2);
    rescan();
    queue_.advance(5);
    EXPECT_FALSE(model.importLayout(exchangeFile({LaunchItem::app(path(1))})));
    installed_ = apps(5);
    rescan();
    EXPECT_EQ(model.items().back(), LaunchItem::app(path(2)));
}

TEST_F(LauncherModelPlaces, AnImportBeforeTheFirstScanWaitsForIt) {
    installed_ = apps(3);
    LauncherModel& model = makeModel();
    const LaunchItems imported = {LaunchItem::app(path(3)), LaunchItem::app(path(1)),
                                  LaunchItem::app(path(2))};
    EXPECT_FALSE(model.importLayout(exchangeFile(imported)));
    EXPECT_TRUE(model.importLayout("no layout"));
    model.refreshApps();
    queue_.runPosted();
    EXPECT_EQ(model.items(), imported);
    EXPECT_EQ(files_.file(layoutPath), encodeItems(imported));
}

TEST_F(LauncherModelPlaces, AResetReplacesAWaitingImport) {
    installed_ = apps(3);
    LauncherModel& model = makeModel();
    EXPECT_FALSE(model.importLayout(exchangeFile({LaunchItem::app(path(3))})));
    model.resetLayout();
    model.refreshApps();
    queue_.runPosted();
    EXPECT_EQ(model.items().front(), LaunchItem::app(path(1)));
}

TEST_F(LauncherModelPlaces, OfTwoImportedFoldersWithOneIdTheSecondGetsItsOwn) {
    LauncherModel& model = runningArranged();
    const LaunchItems imported = {LaunchItem::folder({games_.id, u"First"_s, {path(1), path(2)}}),
                                  LaunchItem::folder({games_.id, u"Second"_s, {path(3), path(4), path(5)}})};
    EXPECT_FALSE(model.importLayout(exchangeFile(imported)));
    ASSERT_EQ(model.items().size(), 2U);
    EXPECT_EQ(model.items()[0], imported[0]);
    const Folder& second = *model.items()[1].asFolder();
    EXPECT_NE(second.id, games_.id);
    EXPECT_EQ(second.name, u"Second");
    EXPECT_EQ(second.apps, imported[1].asFolder()->apps);
}

TEST_F(LauncherModelPlaces, OfTwoSavedFoldersWithOneIdTheSecondGetsItsOwn) {
    const LaunchItems saved = {LaunchItem::folder({games_.id, u"First"_s, {path(1), path(2)}}),
                               LaunchItem::folder({games_.id, u"Second"_s, {path(3)}})};
    files_.addFile(layoutPath, encodeItems(saved));
    LauncherModel& model = shownWith(3);
    ASSERT_EQ(model.items().size(), 2U);
    EXPECT_EQ(model.items()[0], saved[0]);
    EXPECT_NE(model.items()[1].asFolder()->id, games_.id);
    EXPECT_EQ(model.items()[1].asFolder()->apps, QStringList{path(3)});
}

TEST_F(LauncherModelPlaces, AScanHeldBackByADragKeepsMissingApplications) {
    LauncherModel& model = runningArranged();
    press({210, 190});
    dragTo({210, 190}, {260, 190});
    ASSERT_TRUE(model.drag());
    uninstall(1);
    rescan();
    queue_.advance(1);
    release({210, 190}, {210, 190});
    queue_.advance(1);
    EXPECT_EQ(model.items().size(), arranged_.size());
    queue_.advance(5);
    EXPECT_EQ(model.items().size(), arranged_.size() - 1);
}
