#include "support/ModelFixture.h"

#include <QSignalSpy>

using namespace amberquill;
using namespace Qt::StringLiterals;

using LauncherModelScan = ModelFixture;

TEST_F(LauncherModelScan, TheFirstScanLaysOutAllAppsByNameAndSaves) {
    installed_ = {{u"/10.app"_s, u"App 10"_s}, {u"/9.app"_s, u"App 9"_s}};
    LauncherModel& model = makeModel();
    EXPECT_TRUE(model.items().empty());
    model.refreshApps();
    queue_.runPosted();
    const LaunchItems expected = {LaunchItem::app(u"/9.app"_s), LaunchItem::app(u"/10.app"_s)};
    EXPECT_EQ(model.items(), expected);
    EXPECT_EQ(files_.file(layoutPath), encodeItems(expected));
}

TEST_F(LauncherModelScan, AScanWithoutChangesTouchesNeitherItemsNorFile) {
    LauncherModel& model = shownWith(3);
    const int writes = files_.writes();
    QSignalSpy items(&model, &LauncherModel::itemsChanged);
    model.refreshApps();
    queue_.runPosted();
    EXPECT_EQ(items.count(), 0);
    EXPECT_EQ(files_.writes(), writes);
}

TEST_F(LauncherModelScan, OnlyOneScanRunsAtATime) {
    installed_ = apps(3);
    LauncherModel& model = makeModel();
    model.refreshApps();
    EXPECT_TRUE(model.isScanning());
    model.refreshApps();
    queue_.runPosted();
    EXPECT_EQ(scans_, 1);
    EXPECT_FALSE(model.isScanning());
    model.refreshApps();
    queue_.runPosted();
    EXPECT_EQ(scans_, 2);
}

TEST_F(LauncherModelScan, AppsComeAndGoAndThePageStaysInRange) {
    LauncherModel& model = shownWith(80);
    model.goToPage(2);
    model.applyScan(apps(36));
    EXPECT_EQ(model.page(), 1);
    EXPECT_EQ(model.items().size(), 36U);
    model.applyScan(apps(2));
    EXPECT_EQ(model.page(), 0);
    model.applyScan({});
    EXPECT_EQ(model.page(), 0);
    EXPECT_EQ(model.displayedPageCount(), 1);
}

TEST_F(LauncherModelScan, ARenamedAppIsSignalledEvenWhenTheLayoutStays) {
    LauncherModel& model = shownWith(2);
    QSignalSpy names(&model, &LauncherModel::namesChanged);
    QSignalSpy items(&model, &LauncherModel::itemsChanged);
    model.applyScan(apps(2));
    EXPECT_EQ(names.count(), 0);
    model.applyScan({{path(1), u"Another Name"_s}, {path(2), u"App 2"_s}});
    EXPECT_EQ(names.count(), 1);
    EXPECT_EQ(items.count(), 0);
    EXPECT_EQ(model.appName(path(1)), u"Another Name"_s);
}

TEST_F(LauncherModelScan, ThePageCountIsSignalledOnlyWhenItChanges) {
    LauncherModel& model = shownWith(35);
    QSignalSpy count(&model, &LauncherModel::pageCountChanged);
    model.applyScan(apps(34));
    EXPECT_EQ(count.count(), 0);
    model.applyScan(apps(36));
    EXPECT_EQ(count.count(), 1);
    EXPECT_EQ(model.displayedPageCount(), 2);
}

TEST_F(LauncherModelScan, ShowingTheLauncherResetsTransientStateAndScans) {
    const Folder folder{QUuid::createUuid(), u"F"_s, {path(1)}};
    files_.addFile(layoutPath, encodeItems({LaunchItem::folder(folder)}));
    LauncherModel& model = shownWith(80);
    model.goToPage(1);
    model.handleScroll({{-40, 0}, true, ScrollEvent::Phase::Changed, false});
    model.openFolder(folder.id);
    press({300, 300});
    ASSERT_EQ(model.scrollOffset(), -40);
    const int scans = scans_;
    model.willShow();
    EXPECT_FALSE(model.openFolderID().has_value());
    EXPECT_EQ(model.pressedID(), QString());
    EXPECT_EQ(model.searchText(), QString());
    EXPECT_EQ(model.scrollOffset(), 0);
    EXPECT_EQ(model.page(), 1) << "the page stays";
    queue_.runPosted();
    EXPECT_EQ(scans_, scans + 1);
}

TEST_F(LauncherModelScan, AScanThatOutlivesTheModelDoesNothing) {
    installed_ = apps(3);
    makeModel().refreshApps();
    model_.reset();
    queue_.runPosted();
    EXPECT_EQ(scans_, 1);
    EXPECT_EQ(files_.writes(), 0);
}
