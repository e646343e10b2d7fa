#include "localization/L.h"
#include "motion/Animation.h"
#include "motion/Animations.h"
#include "support/ModelFixture.h"

#include <QSignalSpy>

using namespace amberquill;
using namespace Qt::StringLiterals;

namespace {

class LauncherModelFolders : public ModelFixture {
protected:
    // App 3 before a folder of App 1 and App 2, and `others` more applications.
    LauncherModel& withFolder(int others = 0) {
        files_.addFile(layoutPath, encodeItems({LaunchItem::app(path(3)), LaunchItem::folder(games_)}));
        return shownWith(3 + others);
    }

    QByteArray onDisk() {
        queue_.runPosted();
        return files_.file(layoutPath).value_or(QByteArray());
    }

    const Folder games_{QUuid::createUuid(), u"Games"_s, {path(1), path(2)}};
};

} // namespace

TEST_F(LauncherModelFolders, AFolderIsFoundByItsId) {
    const LauncherModel& model = withFolder();
    EXPECT_EQ(model.folderIndex(games_.id), 1U);
    ASSERT_NE(model.folder(games_.id), nullptr);
    EXPECT_EQ(*model.folder(games_.id), games_);
    EXPECT_EQ(model.folderIndex(QUuid::createUuid()), std::nullopt);
    EXPECT_EQ(model.folder(QUuid()), nullptr);
}

TEST_F(LauncherModelFolders, OpeningShowsThePanelOnItsSpringAndLeavesThePage) {
    LauncherModel& model = withFolder(60);
    model.goToPage(1);
    std::optional<Animation> carried;
    QObject::connect(&model, &LauncherModel::openFolderIDChanged,
                     [&carried] { carried = currentAnimation(); });
    model.openFolder(games_.id);
    EXPECT_EQ(model.openFolderID(), games_.id);
    EXPECT_EQ(carried, spring(0.34, 0.86));
    EXPECT_EQ(model.page(), 1);
}

TEST_F(LauncherModelFolders, AnUnknownIdOpensAndRenamesNothing) {
    LauncherModel& model = withFolder();
    QSignalSpy items(&model, &LauncherModel::itemsChanged);
    model.openFolder(QUuid::createUuid());
    EXPECT_EQ(model.openFolderID(), std::nullopt);
    model.openFolder(games_.id);
    model.openFolder(QUuid::createUuid());
    EXPECT_EQ(model.openFolderID(), games_.id);
    model.renameFolder(QUuid::createUuid(), u"X"_s);
    EXPECT_EQ(items.count(), 0);
}

TEST_F(LauncherModelFolders, ANewNameIsShownAtOnceAndOnTheDiskWhenTheFolderCloses) {
    LauncherModel& model = withFolder();
    model.openFolder(games_.id);
    const QByteArray before = onDisk();
    QSignalSpy items(&model, &LauncherModel::itemsChanged);
    model.renameFolder(games_.id, u"  Chess "_s);
    EXPECT_EQ(items.count(), 1);
    const Folder renamed{games_.id, u"  Chess "_s, games_.apps};
    EXPECT_EQ(*model.folder(games_.id), renamed);
    EXPECT_EQ(onDisk(), before);
    model.closeFolder();
    EXPECT_EQ(onDisk(), encodeItems({LaunchItem::app(path(3)), LaunchItem::folder(renamed)}));
}

TEST_F(LauncherModelFolders, TheEditEndsWhileTheFolderIsOpenAndItsTextIsSaved) {
    LauncherModel& model = withFolder();
    model.openFolder(games_.id);
    bool wasOpen = false;
    controller_->whenEditingEnds = [&] {
        wasOpen = model.folderIsOpen();
        model.renameFolder(games_.id, u"Chess"_s);
    };
    model.closeFolder();
    EXPECT_TRUE(wasOpen);
    EXPECT_EQ(onDisk(), encodeItems({LaunchItem::app(path(3)),
                                     LaunchItem::folder({games_.id, u"Chess"_s, games_.apps})}));
}

TEST_F(LauncherModelFolders, AnEmptyNameIsKeptAsItIs) {
    LauncherModel& model = withFolder();
    model.renameFolder(games_.id, QString());
    EXPECT_EQ(model.folder(games_.id)->name, QString());
}

TEST_F(LauncherModelFolders, RenamingToTheSameNameTouchesNothing) {
    LauncherModel& model = withFolder();
    QSignalSpy items(&model, &LauncherModel::itemsChanged);
    model.renameFolder(games_.id, u"Games"_s);
    EXPECT_EQ(items.count(), 0);
    model.renameFolder(games_.id, u"games"_s);
    EXPECT_EQ(items.count(), 1);
}

TEST_F(LauncherModelFolders, ClosingWithNoFolderOpenNeitherSavesNorMovesTheFocus) {
    LauncherModel& model = withFolder();
    model.renameFolder(games_.id, u"Chess"_s);
    const int writes = files_.writes();
    const int token = model.focusSearchToken();
    model.closeFolder();
    queue_.runPosted();
    EXPECT_EQ(files_.writes(), writes);
    EXPECT_EQ(model.focusSearchToken(), token);
    EXPECT_EQ(controller_->editingEnded, 0);
}

TEST_F(LauncherModelFolders, ANewFolderIsTheLastItemSavedAndInViewAndNotOpened) {
    LauncherModel& model = withFolder(67); // with the new one 70 items: pages 0 and 1
    std::optional<Animation> carried;
    QObject::connect(&model, &LauncherModel::pageChanged, [&carried] { carried = currentAnimation(); });
    model.newEmptyFolder();
    const Folder* made = model.items().back().asFolder();
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(made->name, L::newFolder());
    EXPECT_TRUE(made->apps.isEmpty());
    EXPECT_FALSE(made->id.isNull());
    EXPECT_EQ(onDisk(), encodeItems(model.items()));
    EXPECT_EQ(model.page(), 1);
    EXPECT_EQ(carried, spring(0.42, 0.86));
    EXPECT_EQ(model.openFolderID(), std::nullopt);
}

TEST_F(LauncherModelFolders, ANewFolderThatBeginsAPageShowsThatPage) {
    LauncherModel& model = withFolder(33); // 35 items
    QSignalSpy count(&model, &LauncherModel::pageCountChanged);
    model.newEmptyFolder();
    EXPECT_EQ(model.page(), 1);
    EXPECT_EQ(count.count(), 1);
}

TEST_F(LauncherModelFolders, ANewFolderEndsASearchFirst) {
    LauncherModel& model = withFolder(67);
    model.setSearchText(u"App 7"_s);
    QSignalSpy text(&model, &LauncherModel::searchTextChanged);
    model.newEmptyFolder();
    EXPECT_EQ(text.count(), 1);
    EXPECT_EQ(model.searchText(), QString());
    EXPECT_EQ(model.page(), model.displayedPageCount() - 1);
    EXPECT_TRUE(model.items().back().isFolder());
    EXPECT_EQ(onDisk(), encodeItems(model.items()));
}

TEST_F(LauncherModelFolders, OpeningAFolderLeavesTheSearch) {
    LauncherModel& model = withFolder();
    model.setSearchText(u"App"_s);
    model.openFolder(games_.id);
    EXPECT_EQ(model.searchText(), u"App"_s);
    EXPECT_TRUE(model.folderIsOpen());
}

TEST_F(LauncherModelFolders, EachNewFolderHasAnIdOfItsOwn) {
    LauncherModel& model = withFolder();
    model.newEmptyFolder();
    model.newEmptyFolder();
    ASSERT_EQ(model.items().size(), 4U);
    EXPECT_NE(model.items()[2].id(), model.items()[3].id());
}

TEST_F(LauncherModelFolders, NoFolderOperationRemovesAFolder) {
    files_.addFile(layoutPath, encodeItems({LaunchItem::folder({games_.id, u"One"_s, {path(1)}})}));
    LauncherModel& model = shownWith(1);
    model.newEmptyFolder();
    const QUuid empty = model.items().back().asFolder()->id;
    for (const QUuid& id : {games_.id, empty}) {
        model.openFolder(id);
        model.renameFolder(id, u"Still here"_s);
        model.closeFolder();
    }
    EXPECT_EQ(model.items().size(), 2U);
    EXPECT_NE(model.folder(games_.id), nullptr);
    EXPECT_NE(model.folder(empty), nullptr);
}
