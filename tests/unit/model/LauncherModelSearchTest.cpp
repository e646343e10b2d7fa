#include "support/ModelFixture.h"

#include <QSignalSpy>

using namespace amberquill;
using namespace Qt::StringLiterals;

namespace {

class LauncherModelSearch : public ModelFixture {
protected:
    LauncherModel& shownWithNames(const QStringList& names) {
        for (const QString& name : names) {
            installed_.push_back({u"/Applications/"_s + name + u".app"_s, name});
        }
        LauncherModel& model = makeModel();
        model.setSize({1500, 892});
        model.willShow();
        queue_.runPosted();
        return model;
    }

    static QStringList names(const std::vector<AppInfo>& apps) {
        QStringList result;
        for (const AppInfo& app : apps) {
            result.append(app.name);
        }
        return result;
    }

    static LaunchItem app(const QString& name) {
        return LaunchItem::app(u"/Applications/"_s + name + u".app"_s);
    }
};

} // namespace

TEST_F(LauncherModelSearch, TextOfOnlySpacesIsNoSearchAndTheLayoutStaysOnItsPage) {
    LauncherModel& model = shownWith(80);
    model.goToPage(1);
    QSignalSpy results(&model, &LauncherModel::searchResultsChanged);
    model.setSearchText(u" \n\t"_s);
    EXPECT_FALSE(model.isSearching());
    EXPECT_TRUE(model.searchResults().empty());
    EXPECT_EQ(model.displayedItems(), model.items());
    EXPECT_EQ(model.page(), 1);
    EXPECT_EQ(results.count(), 0);
}

TEST_F(LauncherModelSearch, ResultsAreDisplayedInPlaceOfTheLayoutWithoutFolders) {
    const Folder folder{QUuid::createUuid(), u"Notes and more"_s, {u"/Applications/Notes.app"_s}};
    files_.addFile(layoutPath, encodeItems({LaunchItem::folder(folder)}));
    LauncherModel& model = shownWithNames({u"Sticky Notes"_s, u"Notes"_s, u"Chess"_s, u"Notebook"_s});
    model.setSearchText(u"note"_s);
    EXPECT_TRUE(model.isSearching());
    EXPECT_EQ(names(model.searchResults()), (QStringList{u"Notebook"_s, u"Notes"_s, u"Sticky Notes"_s}));
    EXPECT_EQ(model.displayedItems(),
              (LaunchItems{app(u"Notebook"_s), app(u"Notes"_s), app(u"Sticky Notes"_s)}));
    EXPECT_EQ(model.items().size(), 4U) << "the layout itself stays";
    model.setSearchText({});
    EXPECT_EQ(model.displayedItems(), model.items());
}

TEST_F(LauncherModelSearch, PagesTilesAndHitsFollowTheResults) {
    LauncherModel& model = shownWith(80);
    QSignalSpy pageCount(&model, &LauncherModel::pageCountChanged);
    model.setSearchText(u"App 77"_s);
    EXPECT_EQ(model.displayedPageCount(), 1);
    EXPECT_EQ(pageCount.count(), 1);
    ASSERT_EQ(model.visibleEntries().size(), 1U);
    EXPECT_EQ(model.visibleEntries().front().item, LaunchItem::app(path(77)));
    const QPointF firstCell(120 + 90, 120 + 70);
    EXPECT_EQ(model.hitTest(firstCell), Hit{Hit::GridItem{LaunchItem::app(path(77)).id()}});
    tap(firstCell);
    EXPECT_EQ(controller_->hides, std::vector<std::optional<QString>>{path(77)});
}

TEST_F(LauncherModelSearch, EndingTheSearchReturnsToThePageBeforeIt) {
    LauncherModel& model = shownWith(80);
    model.goToPage(2);
    model.setSearchText(u"a"_s);
    EXPECT_EQ(model.page(), 0);
    model.goToPage(1);
    model.setSearchText(u" "_s);
    EXPECT_EQ(model.page(), 2);
}

TEST_F(LauncherModelSearch, ThePageReturnedToIsClampedWhenTheLayoutHasFewerPages) {
    LauncherModel& model = shownWith(80);
    model.goToPage(2);
    model.setSearchText(u"a"_s);
    model.applyScan(apps(36));
    model.setSearchText({});
    EXPECT_EQ(model.page(), 1);
}

TEST_F(LauncherModelSearch, EachCharacterTypedShowsTheFirstPageAtRest) {
    LauncherModel& model = shownWith(80);
    model.setSearchText(u"a"_s);
    model.goToPage(1);
    model.handleScroll({{0, 0}, true, ScrollEvent::Phase::Began, false});
    model.handleScroll({{-40, 0}, true, ScrollEvent::Phase::Changed, false});
    ASSERT_EQ(model.scrollOffset(), -40);
    model.setSearchText(u"ap"_s);
    EXPECT_EQ(model.page(), 0);
    EXPECT_EQ(model.scrollOffset(), 0);
    model.goToPage(2);
    model.setSearchText(u"a"_s);
    EXPECT_EQ(model.page(), 0) << "a character taken away too";
    model.setSearchText({});
    EXPECT_EQ(model.page(), 0) << "the page before the search, not one within it";
}

TEST_F(LauncherModelSearch, StartingASearchClosesTheOpenFolder) {
    const Folder folder{QUuid::createUuid(), u"F"_s, {path(1)}};
    files_.addFile(layoutPath, encodeItems({LaunchItem::folder(folder)}));
    LauncherModel& model = shownWith(3);
    model.openFolder(folder.id);
    model.setSearchText(u" "_s);
    EXPECT_TRUE(model.folderIsOpen()) << "white space is no search";
    model.setSearchText(u" a"_s);
    EXPECT_FALSE(model.openFolderID().has_value());
}

TEST_F(LauncherModelSearch, AChangeIsSignalledOnceWithAllStateUpdated) {
    LauncherModel& model = shownWith(80);
    model.goToPage(2);
    QSignalSpy text(&model, &LauncherModel::searchTextChanged);
    int told = 0;
    QObject::connect(&model, &LauncherModel::searchResultsChanged, [&] {
        ++told;
        EXPECT_EQ(model.page(), 0);
        EXPECT_EQ(model.displayedItems().size(), 1U);
        EXPECT_EQ(model.displayedPageCount(), 1);
    });
    QObject::connect(&model, &LauncherModel::pageChanged, [&] {
        EXPECT_EQ(model.displayedItems().size(), 1U) << "the page is signalled after its items";
    });
    model.setSearchText(u"app 42"_s);
    model.setSearchText(u"app 42"_s);
    EXPECT_EQ(told, 1);
    EXPECT_EQ(text.count(), 1);
}

TEST_F(LauncherModelSearch, ShowingTheLauncherEndsTheSearchOnThePageBeforeIt) {
    LauncherModel& model = shownWith(80);
    model.goToPage(1);
    model.setSearchText(u"app 4"_s);
    model.willShow();
    EXPECT_EQ(model.searchText(), QString());
    EXPECT_FALSE(model.isSearching());
    EXPECT_EQ(model.page(), 1);
    EXPECT_EQ(model.displayedItems().size(), 80U);
}

TEST_F(LauncherModelSearch, AScanWhileSearchingUpdatesTheResults) {
    LauncherModel& model = shownWith(3);
    model.setSearchText(u"app 3"_s);
    QSignalSpy results(&model, &LauncherModel::searchResultsChanged);
    model.applyScan(apps(39));
    EXPECT_EQ(results.count(), 1);
    EXPECT_EQ(model.searchResults().size(), 11U);
    model.applyScan(apps(39));
    EXPECT_EQ(results.count(), 1) << "nothing has changed";
    model.applyScan(apps(2));
    EXPECT_TRUE(model.searchResults().empty());
    EXPECT_TRUE(model.findsNothing());
}

TEST_F(LauncherModelSearch, AScanSignalsThePageCountOfTheResults) {
    LauncherModel& model = shownWith(3);
    model.setSearchText(u"app"_s);
    QSignalSpy pageCount(&model, &LauncherModel::pageCountChanged);
    model.applyScan(apps(36));
    EXPECT_EQ(model.displayedPageCount(), 2);
    EXPECT_EQ(pageCount.count(), 1);
    model.goToPage(1);
    model.applyScan(apps(35));
    EXPECT_EQ(model.page(), 0);
}

TEST_F(LauncherModelSearch, ASearchDoesNotWaitForTheNamesToBeIndexed) {
    installed_ = apps(12);
    LauncherModel& model = makeModel();
    model.applyScan(apps(12));
    model.setSearchText(u"app 11"_s);
    EXPECT_EQ(names(model.searchResults()), QStringList{u"App 11"_s});
    model.applyScan(apps(10));
    queue_.runPosted();
    model.setSearchText(u"app 1"_s);
    EXPECT_EQ(names(model.searchResults()), (QStringList{u"App 1"_s, u"App 10"_s}))
        << "the index of the scan before is dropped";
}

TEST_F(LauncherModelSearch, AnIndexThatOutlivesTheModelDoesNothing) {
    makeModel().applyScan(apps(3));
    model_.reset();
    queue_.runPosted();
    EXPECT_EQ(queue_.waiting(), 0U);
}

TEST_F(LauncherModelSearch, NothingIsFoundBeforeTheFirstScan) {
    LauncherModel& model = makeModel();
    EXPECT_FALSE(model.findsNothing()) << "there is no search yet";
    model.setSearchText(u"a"_s);
    EXPECT_TRUE(model.findsNothing());
    EXPECT_EQ(model.displayedPageCount(), 1);
}

TEST_F(LauncherModelSearch, LaunchingTheFirstResultHidesTheLauncherAndOpensIt) {
    LauncherModel& model = shownWithNames({u"Sticky Notes"_s, u"Notes"_s});
    model.setSearchText(u"note"_s);
    model.launchFirstResult();
    EXPECT_EQ(controller_->hides, std::vector<std::optional<QString>>{u"/Applications/Notes.app"_s});
}

TEST_F(LauncherModelSearch, WithoutAResultOrAWindowNothingIsLaunched) {
    LauncherModel& model = shownWith(3);
    model.launchFirstResult();
    model.setSearchText(u"nothing of this name"_s);
    model.launchFirstResult();
    EXPECT_TRUE(controller_->hides.empty());
    model.setSearchText(u"app"_s);
    controller_.reset();
    model.launchFirstResult();
}
