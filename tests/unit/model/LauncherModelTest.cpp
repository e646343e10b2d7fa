#include "motion/Animation.h"
#include "motion/Animations.h"
#include "support/ModelFixture.h"

using namespace amberquill;
using namespace Qt::StringLiterals;

namespace {

class LauncherModelTest : public ModelFixture {
protected:
    static ScrollEvent notch(double y) { return {{0, y}, false, ScrollEvent::Phase::None, false}; }
    static ScrollEvent fingers(ScrollEvent::Phase phase, double x = 0, double y = 0) {
        return {{x, y}, true, phase, false};
    }
};

} // namespace

TEST_F(LauncherModelTest, StartsOnTheFirstPageWithTheStoredSettings) {
    preferences_.setInteger(u"gridColumns"_s, 8);
    preferences_.setInteger(u"gridRows"_s, 6);
    preferences_.setString(u"backgroundTheme"_s, u"green"_s);
    const LauncherModel& model = makeModel();
    EXPECT_EQ(model.columns(), 8);
    EXPECT_EQ(model.rows(), 6);
    EXPECT_EQ(model.background(), BackgroundTheme::Green);
    EXPECT_EQ(model.page(), 0);
    EXPECT_FALSE(model.presented());
    EXPECT_FALSE(model.folderIsOpen());
}

TEST_F(LauncherModelTest, WithoutStoredSettingsThePageIsSevenByFiveAndBlue) {
    preferences_.setString(u"gridColumns"_s, u"8"_s);
    preferences_.setString(u"backgroundTheme"_s, u"red"_s);
    const LauncherModel& model = makeModel();
    EXPECT_EQ(model.columns(), 7);
    EXPECT_EQ(model.rows(), 5);
    EXPECT_EQ(model.background(), BackgroundTheme::Blue);
}

TEST_F(LauncherModelTest, AStoredGridWithoutCellsStillHasOne) {
    preferences_.setInteger(u"gridColumns"_s, 0);
    preferences_.setInteger(u"gridRows"_s, -3);
    const LauncherModel& model = makeModel();
    EXPECT_EQ(model.columns(), 1);
    EXPECT_EQ(model.rows(), 1);
}

TEST_F(LauncherModelTest, GoingToAPageStaysInRangeAndEndsTheScroll) {
    LauncherModel& model = shownWith(80);
    model.handleScroll(fingers(ScrollEvent::Phase::Began));
    model.handleScroll(fingers(ScrollEvent::Phase::Changed, -40));
    ASSERT_EQ(model.scrollOffset(), -40);
    model.goToPage(99);
    EXPECT_EQ(model.page(), 2);
    EXPECT_EQ(model.scrollOffset(), 0);
    model.goToPage(-1);
    EXPECT_EQ(model.page(), 0);
}

TEST_F(LauncherModelTest, TurningToAPageMovesOnThePageSpring) {
    LauncherModel& model = shownWith(80);
    std::optional<Animation> carried;
    QObject::connect(&model, &LauncherModel::pageChanged, [&carried] { carried = currentAnimation(); });
    model.turnToPage(1);
    EXPECT_EQ(carried, motion::page);
}

TEST_F(LauncherModelTest, AWheelNotchTurnsThePage) {
    LauncherModel& model = shownWith(80);
    model.handleScroll(notch(-1));
    EXPECT_EQ(model.page(), 1);
    model.handleScroll(notch(-1));
    EXPECT_EQ(model.page(), 1) << "too soon";
    queue_.advance(0.31);
    model.handleScroll(notch(-1));
    queue_.advance(0.31);
    model.handleScroll(notch(-1));
    EXPECT_EQ(model.page(), 2) << "the last page";
}

TEST_F(LauncherModelTest, ScrollingIsIgnoredWithoutAWidthAndOverAnOpenFolder) {
    const Folder folder{QUuid::createUuid(), u"F"_s, {path(1)}};
    files_.addFile(layoutPath, encodeItems({LaunchItem::folder(folder)}));
    LauncherModel& model = shownWith(80);
    model.setSize({0, 0});
    model.handleScroll(notch(-1));
    EXPECT_EQ(model.page(), 0);
    model.setSize({1500, 892});
    model.openFolder(folder.id);
    model.handleScroll(notch(-1));
    EXPECT_EQ(model.page(), 0);
}

TEST_F(LauncherModelTest, ThePagesFollowTheFingersAndSpringToAPage) {
    LauncherModel& model = shownWith(80);
    model.handleScroll(fingers(ScrollEvent::Phase::Began, -500));
    EXPECT_EQ(model.scrollOffset(), 0);
    model.handleScroll(fingers(ScrollEvent::Phase::Changed, -60));
    model.handleScroll(fingers(ScrollEvent::Phase::Changed, -31));
    EXPECT_EQ(model.scrollOffset(), -91);
    std::optional<Animation> carried;
    QObject::connect(&model, &LauncherModel::scrollOffsetChanged,
                     [&carried] { carried = currentAnimation(); });
    model.handleScroll(fingers(ScrollEvent::Phase::Ended));
    EXPECT_EQ(model.page(), 1);
    EXPECT_EQ(model.scrollOffset(), 0);
    EXPECT_EQ(carried, motion::page);
}

TEST_F(LauncherModelTest, MomentumAndOtherPhasesAreIgnored) {
    LauncherModel& model = shownWith(80);
    model.handleScroll(fingers(ScrollEvent::Phase::Began));
    model.handleScroll({{-200, 0}, true, ScrollEvent::Phase::Changed, true});
    model.handleScroll({{-200, 0}, true, ScrollEvent::Phase::None, false});
    EXPECT_EQ(model.scrollOffset(), 0);
    model.handleScroll({{0, 0}, true, ScrollEvent::Phase::Ended, true});
    EXPECT_EQ(model.page(), 0);
}

TEST_F(LauncherModelTest, ANewSwipeBeginsAtZero) {
    LauncherModel& model = shownWith(80);
    for (const ScrollEvent::Phase beginning : {ScrollEvent::Phase::MayBegin, ScrollEvent::Phase::Began}) {
        model.handleScroll(fingers(ScrollEvent::Phase::Changed, -60));
        model.handleScroll(fingers(beginning));
        model.handleScroll(fingers(ScrollEvent::Phase::Changed, -60));
        EXPECT_EQ(model.scrollOffset(), -60);
        model.handleScroll(fingers(ScrollEvent::Phase::Ended));
        EXPECT_EQ(model.page(), 0);
    }
}

TEST_F(LauncherModelTest, ACancelledSwipeTurnsThePageAsAnEndedOneDoes) {
    LauncherModel& model = shownWith(80);
    model.handleScroll(fingers(ScrollEvent::Phase::Began));
    model.handleScroll(fingers(ScrollEvent::Phase::Changed, -91));
    model.handleScroll(fingers(ScrollEvent::Phase::Cancelled));
    EXPECT_EQ(model.page(), 1);
    EXPECT_EQ(model.scrollOffset(), 0);
    model.handleScroll(fingers(ScrollEvent::Phase::Began));
    model.handleScroll(fingers(ScrollEvent::Phase::Changed, -90));
    model.handleScroll(fingers(ScrollEvent::Phase::Cancelled));
    EXPECT_EQ(model.page(), 1);
    EXPECT_EQ(model.scrollOffset(), 0);
}

TEST_F(LauncherModelTest, AnAppIsNamedByTheScanAndAFolderByItself) {
    const LauncherModel& model = shownWith(3);
    EXPECT_EQ(model.name(LaunchItem::app(path(2))), u"App 2"_s);
    EXPECT_EQ(model.name(LaunchItem::app(u"/gone/Old One.app"_s)), u"Old One"_s);
    EXPECT_EQ(model.name(LaunchItem::folder({QUuid::createUuid(), u"Games"_s, {}})), u"Games"_s);
}

TEST_F(LauncherModelTest, UntilTheFirstScanNamesAreTheRememberedOnes) {
    remembered_.insert(path(1), u"Real Name"_s);
    installed_ = apps(1);
    LauncherModel& model = makeModel();
    EXPECT_EQ(model.name(LaunchItem::app(path(1))), u"Real Name"_s);
    EXPECT_EQ(model.name(LaunchItem::app(path(2))), u"2"_s);
    model.refreshApps();
    queue_.runPosted();
    EXPECT_EQ(model.name(LaunchItem::app(path(1))), u"App 1"_s);
}

TEST_F(LauncherModelTest, ClosingAFolderEndsTheEditSavesAndAsksForTheSearchField) {
    const Folder folder{QUuid::createUuid(), u"F"_s, {path(1)}};
    files_.addFile(layoutPath, encodeItems({LaunchItem::folder(folder)}));
    LauncherModel& model = shownWith(1);
    std::optional<Animation> carried;
    QObject::connect(&model, &LauncherModel::openFolderIDChanged,
                     [&carried] { carried = currentAnimation(); });
    model.openFolder(folder.id);
    EXPECT_TRUE(model.folderIsOpen());
    EXPECT_EQ(carried, motion::openFolder);
    const int token = model.focusSearchToken();
    model.closeFolder();
    EXPECT_FALSE(model.folderIsOpen());
    EXPECT_EQ(carried, motion::closeFolder);
    EXPECT_EQ(controller_->editingEnded, 1);
    EXPECT_EQ(model.focusSearchToken(), token + 1);
}

TEST_F(LauncherModelTest, ClosingWithNoFolderOpenDoesNothing) {
    LauncherModel& model = shownWith(1);
    const int token = model.focusSearchToken();
    model.closeFolder();
    EXPECT_EQ(controller_->editingEnded, 0);
    EXPECT_EQ(model.focusSearchToken(), token);
}
