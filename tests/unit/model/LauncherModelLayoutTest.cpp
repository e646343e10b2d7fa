#include "data/LayoutFile.h"
#include "localization/L.h"
#include "motion/Animation.h"
#include "motion/Animations.h"
#include "support/ModelFixture.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSignalSpy>
#include <random>

using namespace amberquill;
using namespace Qt::StringLiterals;
using namespace std::chrono;

namespace {

const QUuid gamesId = QUuid::fromString(u"3F2504E0-4F89-11D3-9A0C-0305E82C3301"_s);

class LauncherModelLayout : public ModelFixture {
protected:
    void SetUp() override {
        ModelFixture::SetUp();
        L::setLanguage(AppLanguage::English);
        homes_.own = u"/Users/me"_s;
        homes_.of = [](const QString& user) {
            return user == u"ann"_s ? std::optional(u"/Users/ann"_s) : std::nullopt;
        };
    }

    void TearDown() override {
        ModelFixture::TearDown();
        L::setLanguage(AppLanguage::System);
    }

    LauncherModel& shownWithItems(const LaunchItems& items, const std::vector<AppInfo>& installed) {
        files_.addFile(layoutPath, encodeItems(items));
        installed_ = installed;
        LauncherModel& model = makeModel();
        model.setSize({1500, 892});
        model.willShow();
        queue_.runPosted();
        return model;
    }

    static AppInfo named(const QString& path, const QString& name) { return {path, name}; }
    static LaunchItem app(const QString& path) { return LaunchItem::app(path); }

    static QByteArray fileWith(const LaunchItems& items, qint64 columns = 7, qint64 rows = 5) {
        return encodeLayoutFile({.exportedAt = {}, .columns = columns, .rows = rows, .items = items});
    }

    void import(const QByteArray& data) {
        EXPECT_FALSE(model_->importLayout(data).has_value()) << data.constData();
    }

    void expectRefused(const QByteArray& data) {
        EXPECT_TRUE(model_->importLayout(data).has_value()) << data.left(300).constData();
    }

    // The model's visible state.
    [[nodiscard]] auto state() const {
        return std::tuple(model_->items(), model_->columns(), model_->rows(), model_->page(),
                          model_->searchText(), model_->openFolderID(), model_->focusSearchToken(),
                          model_->drag().has_value(), files_.file(layoutPath),
                          preferences_.integer(u"gridColumns"_s));
    }
};

} // namespace

TEST_F(LauncherModelLayout, AnExportHoldsTheLayoutTheGridAndTheTime) {
    queue_.setDate(sys_days(2026y / 11 / 15) + 3h + 24min + 7s);
    const QString calculator = u"/Applications/Calculator.app"_s;
    const QString notes = u"/Users/me/Applications/Notes Viewer.app"_s;
    const QString chess = u"/System/Applications/Chess.app"_s;
    const LauncherModel& model =
        shownWithItems({app(calculator), LaunchItem::folder({gamesId, u"Games"_s, {notes, chess}})},
                       {{calculator, {}}, {notes, {}}, {chess, {}}});
    EXPECT_EQ(model.exportLayoutData(), R"({
  "columns" : 7,
  "exportedAt" : "2026-11-15T03:24:07Z",
  "format" : "amberquill-layout",
  "items" : [
    {
      "app" : {
        "_0" : "\/Applications\/Calculator.app"
      }
    },
    {
      "folder" : {
        "_0" : {
          "apps" : [
            "~\/Applications\/Notes Viewer.app",
            "\/System\/Applications\/Chess.app"
          ],
          "id" : "3F2504E0-4F89-11D3-9A0C-0305E82C3301",
          "name" : "Games"
        }
      }
    }
  ],
  "rows" : 5,
  "version" : 1
})");
}

TEST_F(LauncherModelLayout, AnExportHoldsTheGridInUse) {
    LauncherModel& model = shownWith(1);
    model.setGrid(9, 4);
    const auto file = decodeLayoutFile(model.exportLayoutData());
    ASSERT_TRUE(file);
    EXPECT_EQ(std::pair(file->columns, file->rows), std::pair(qint64{9}, qint64{4}));
}

TEST_F(LauncherModelLayout, OnlyTheExchangeFileIsWrittenFromTheHomeFolder) {
    const QString mine = u"/Users/me/X.app"_s;
    const QString abels = u"/Users/meabel/X.app"_s;
    const LauncherModel& model = shownWithItems({}, {{mine, u"X"_s}, {abels, u"Y"_s}});
    const auto file = decodeLayoutFile(model.exportLayoutData());
    ASSERT_TRUE(file);
    EXPECT_EQ(file->items, (LaunchItems{app(u"~/X.app"_s), app(abels)}));
    EXPECT_EQ(files_.file(layoutPath), encodeItems({app(mine), app(abels)}));
}

TEST_F(LauncherModelLayout, AnImportReplacesLayoutAndGridAndSavesThem) {
    LauncherModel& model = shownWith(3);
    const LaunchItems imported = {app(path(3)),
                                  LaunchItem::folder({gamesId, u"Games"_s, {path(2), path(1)}})};
    EXPECT_FALSE(model.importLayout(fileWith(imported, 8, 6)).has_value());
    EXPECT_EQ(model.items(), imported);
    EXPECT_EQ(model.columns(), 8);
    EXPECT_EQ(model.rows(), 6);
    EXPECT_EQ(preferences_.integer(u"gridColumns"_s), 8);
    EXPECT_EQ(preferences_.integer(u"gridRows"_s), 6);
    queue_.runPosted();
    EXPECT_EQ(files_.file(layoutPath), encodeItems(imported));
}

TEST_F(LauncherModelLayout, AnImportExpandsTheTildesOfEveryPath) {
    LauncherModel& model = shownWithItems(
        {},
        {{u"/Users/me/A.app"_s, u"A"_s}, {u"/Users/ann/B.app"_s, u"B"_s}, {u"/Users/me/C.app"_s, u"C"_s}});
    import(fileWith({app(u"~ann/B.app"_s), app(u"~bob/B.app"_s), LaunchItem::folder({gamesId, {}, {
                                                                                         u"~/C.app"_s,
                                                                                         u"~/A.app"_s
                                                                                     }})}));
    EXPECT_EQ(model.items(),
              (LaunchItems{app(u"/Users/ann/B.app"_s),
                           LaunchItem::folder({gamesId, {}, {u"/Users/me/C.app"_s, u"/Users/me/A.app"_s}})}));
}

TEST_F(LauncherModelLayout, ATildeTellsAppsOfOneFileNameApart) {
    LauncherModel& model =
        shownWithItems({}, {{u"/Users/ann/X.app"_s, u"X"_s}, {u"/Users/me/X.app"_s, u"X"_s}});
    import(fileWith({app(u"~/X.app"_s), LaunchItem::folder({gamesId, {}, { u"~ann/X.app"_s }})}));
    EXPECT_EQ(model.items(), (LaunchItems{app(u"/Users/me/X.app"_s),
                                          LaunchItem::folder({gamesId, {}, {u"/Users/ann/X.app"_s}})}));
}

TEST_F(LauncherModelLayout, AppsThatAreNotInTheFileComeIntoOneNewFolder) {
    LauncherModel& model = shownWith(3);
    L::setLanguage(AppLanguage::German);
    import(fileWith({app(path(2))}));
    ASSERT_EQ(model.items().size(), 2U);
    EXPECT_EQ(model.items().front(), app(path(2)));
    const Folder* others = model.items().back().asFolder();
    ASSERT_NE(others, nullptr);
    EXPECT_EQ(others->name, u"Weitere Apps"_s);
    EXPECT_EQ(others->apps, (QStringList{path(1), path(3)}));
}

TEST_F(LauncherModelLayout, ASingleAppThatIsNotInTheFileIsAPlainItem) {
    LauncherModel& model = shownWith(2);
    import(fileWith({app(path(2))}));
    EXPECT_EQ(model.items(), (LaunchItems{app(path(2)), app(path(1))}));
}

TEST_F(LauncherModelLayout, AFileWithoutAnInstalledAppYieldsTheInstalledOnes) {
    LauncherModel& model = shownWith(2);
    import(fileWith({app(u"/gone.app"_s)}));
    ASSERT_EQ(model.items().size(), 1U);
    EXPECT_EQ(model.items().front().asFolder()->apps, (QStringList{path(1), path(2)}));
    model.applyScan(apps(1));
    import(fileWith({app(u"/gone.app"_s)}));
    EXPECT_EQ(model.items(), LaunchItems{app(path(1))});
}

TEST_F(LauncherModelLayout, AnImportedGridIsKeptWithinItsBounds) {
    LauncherModel& model = shownWith(1);
    const auto gridOf = [&model](qint64 columns, qint64 rows) {
        EXPECT_FALSE(model.importLayout(fileWith({}, columns, rows)).has_value());
        return std::pair(model.columns(), model.rows());
    };
    EXPECT_EQ(gridOf(20, 1), std::pair(12, 2));
    EXPECT_EQ(gridOf(0, 99), std::pair(3, 10));
    EXPECT_EQ(gridOf(-5, -5), std::pair(3, 2));
    EXPECT_EQ(gridOf(std::numeric_limits<qint64>::max(), std::numeric_limits<qint64>::min()),
              std::pair(12, 2));
    EXPECT_EQ(gridOf(4, 3), std::pair(4, 3));
}

TEST_F(LauncherModelLayout, TheVersionOfAFileIsIgnored) {
    LauncherModel& model = shownWith(1);
    EXPECT_FALSE(model.importLayout(fileWith({}).replace("\"version\" : 1", "\"version\" : 99")).has_value());
}

TEST_F(LauncherModelLayout, AFileThatIsNoLayoutIsRefusedAndChangesNothing) {
    const Folder folder{gamesId, u"F"_s, {path(1), path(2)}};
    files_.addFile(layoutPath, encodeItems({LaunchItem::folder(folder)}));
    LauncherModel& model = shownWith(80);
    model.goToPage(1);
    model.openFolder(gamesId);
    queue_.runPosted();
    const auto before = state();
    const QByteArray good = fileWith({app(path(3))});
    QSignalSpy items(&model, &LauncherModel::itemsChanged);
    QSignalSpy grid(&model, &LauncherModel::gridChanged);
    expectRefused({});
    expectRefused("[]");
    expectRefused("null");
    expectRefused(encodeItems({app(path(3))}));
    expectRefused(QByteArray(good).replace("amberquill-layout", "amberquill-layouts"));
    expectRefused(QByteArray(good).replace("amberquill-layout", "Amberquill-Layout"));
    expectRefused(QByteArray(good).replace("\"columns\" : 7", "\"columns\" : 7.5"));
    expectRefused(QByteArray(good).replace("\"columns\" : 7", "\"columns\" : 1e308"));
    expectRefused(QByteArray(good).replace("\"rows\" : 5", "\"rows\" : \"5\""));
    expectRefused(QByteArray(good).replace("\"version\" : 1", "\"version\" : null"));
    expectRefused(QByteArray(good).replace("00Z", "00.5Z"));
    expectRefused(QByteArray(good).replace("\"app\"", "\"folder\""));
    expectRefused(QByteArray(good).replace("\"rows\"", "\"row\""));
    for (qsizetype length = 0; length < good.size(); ++length) {
        expectRefused(good.first(length));
    }
    queue_.runPosted();
    EXPECT_EQ(state(), before);
    EXPECT_EQ(items.count(), 0);
    EXPECT_EQ(grid.count(), 0);
    EXPECT_FALSE(model.importLayout(good).has_value());
}

TEST_F(LauncherModelLayout, ARefusedFileLeavesTheSearch) {
    LauncherModel& model = shownWith(80);
    model.setSearchText(u"app"_s);
    model.goToPage(1);
    QSignalSpy text(&model, &LauncherModel::searchTextChanged);
    const auto before = state();
    expectRefused("[]");
    expectRefused(fileWith({}).replace("amberquill-layout", "layout"));
    EXPECT_EQ(state(), before);
    EXPECT_EQ(text.count(), 0);
}

TEST_F(LauncherModelLayout, ARefusedFileLeavesTheDragAndItsPendingIntent) {
    LauncherModel& model = shownWith(3);
    const QPointF tile = model.metrics().cellCenter(0);
    press(tile);
    dragTo(tile, model.metrics().cellCenter(1) + QPointF(70, 0));
    ASSERT_EQ(model.pendingKey(), u"move:1"_s);
    expectRefused("[]");
    expectRefused(fileWith({}).replace("amberquill-layout", "layout"));
    EXPECT_TRUE(model.drag().has_value());
    EXPECT_EQ(model.pendingKey(), u"move:1"_s);
    queue_.advance(0.36);
    EXPECT_EQ(model.items(), (LaunchItems{app(path(2)), app(path(1)), app(path(3))}));
}

TEST_F(LauncherModelLayout, TheRefusalReadsInTheInterfaceLanguage) {
    EXPECT_EQ(InvalidLayoutFile::errorDescription(), u"The file is not an Amberquill layout."_s);
    L::setLanguage(AppLanguage::German);
    EXPECT_EQ(InvalidLayoutFile::errorDescription(), u"Die Datei ist keine Amberquill-Anordnung."_s);
}

TEST_F(LauncherModelLayout, AnImportEndsSearchFolderAndDragAndShowsTheFirstPage) {
    LauncherModel& model = shownWith(80);
    model.goToPage(2);
    model.setSearchText(u"app"_s);
    EXPECT_FALSE(model.importLayout(fileWith({app(path(5))})).has_value());
    EXPECT_EQ(model.searchText(), QString());
    EXPECT_EQ(model.page(), 0);

    model.goToPage(1);
    import(fileWith({LaunchItem::folder({gamesId, {}, { path(1) }})}));
    model.openFolder(gamesId);
    ASSERT_TRUE(model.folderIsOpen());
    import(fileWith({LaunchItem::folder({gamesId, {}, { path(1) }})}));
    EXPECT_FALSE(model.openFolderID().has_value());

    model.resetLayout();
    const QPointF tile = model.metrics().cellCenter(0);
    press(tile);
    dragTo(tile, tile + QPointF(40, 0));
    ASSERT_TRUE(model.drag().has_value());
    import(fileWith({app(path(5))}));
    EXPECT_FALSE(model.drag().has_value());
    EXPECT_EQ(model.pendingKey(), QString());
    EXPECT_EQ(model.pressedID(), QString());
}

TEST_F(LauncherModelLayout, AScanHeldBackByADragIsAppliedBeforeTheImport) {
    LauncherModel& model = shownWith(2);
    const QPointF tile = model.metrics().cellCenter(0);
    press(tile);
    dragTo(tile, tile + QPointF(40, 0));
    model.applyScan(apps(3));
    import(fileWith({app(path(3)), app(path(2)), app(path(1))}));
    EXPECT_EQ(model.items(), (LaunchItems{app(path(3)), app(path(2)), app(path(1))}));
}

TEST_F(LauncherModelLayout, AReplacedLayoutMovesOnItsAnimationAndTheFirstPageOnThatOfPages) {
    LauncherModel& model = shownWith(80);
    std::optional<Animation> items;
    std::optional<Animation> grid;
    std::optional<Animation> page;
    QObject::connect(&model, &LauncherModel::itemsChanged, [&] { items = currentAnimation(); });
    QObject::connect(&model, &LauncherModel::gridChanged, [&] { grid = currentAnimation(); });
    QObject::connect(&model, &LauncherModel::pageChanged, [&] { page = currentAnimation(); });
    model.goToPage(1);
    import(fileWith({LaunchItem::folder({gamesId, {}, {}})}, 4, 2));
    EXPECT_EQ(items, motion::replaceLayout);
    EXPECT_EQ(grid, motion::replaceLayout);
    EXPECT_EQ(page, motion::page);
    EXPECT_EQ(model.page(), 0);

    model.resetLayout();
    items.reset();
    model.goToPage(1);
    page.reset();
    model.resetLayout();
    EXPECT_EQ(items, motion::replaceLayout);
    EXPECT_EQ(page, motion::page);
    EXPECT_EQ(model.page(), 0);

    items.reset();
    model.goToPage(1);
    model.sortByName();
    EXPECT_EQ(items, motion::replaceLayout);
    EXPECT_EQ(model.page(), 1) << "sorting stays on the page";
}

TEST_F(LauncherModelLayout, AResetLaysOutEverythingByNameWithoutFoldersAndSaves) {
    LauncherModel& model = shownWithItems(
        {app(u"/10"_s), LaunchItem::folder({gamesId, u"A"_s, {u"/9"_s, u"/b"_s}}), app(u"/a"_s)},
        {{u"/b"_s, u"same"_s}, {u"/10"_s, u"App 10"_s}, {u"/a"_s, u"Same"_s}, {u"/9"_s, u"app 9"_s}});
    model.goToPage(3);
    model.resetLayout();
    const LaunchItems expected = {app(u"/9"_s), app(u"/10"_s), app(u"/b"_s), app(u"/a"_s)};
    EXPECT_EQ(model.items(), expected) << "equal names in the order of the scan";
    queue_.runPosted();
    EXPECT_EQ(files_.file(layoutPath), encodeItems(expected));
}

TEST_F(LauncherModelLayout, SortingPutsFoldersAmongAppsByNameAndLeavesTheirApps) {
    const LaunchItem folder = LaunchItem::folder({gamesId, u"app 10"_s, {u"/z"_s, u"/y"_s}});
    const LaunchItem twin =
        LaunchItem::folder({QUuid::fromString(u"3F2504E0-4F89-11D3-9A0C-0305E82C3302"_s), u"App 9"_s, {}});
    LauncherModel& model =
        shownWithItems({app(u"/c"_s), folder, app(u"/9"_s), twin, app(u"/1"_s)}, {{u"/c"_s, u"Chess"_s},
                                                                                  {u"/9"_s, u"App 9"_s},
                                                                                  {u"/1"_s, u"ärger"_s},
                                                                                  {u"/z"_s, u"B"_s},
                                                                                  {u"/y"_s, u"A"_s}});
    model.sortByName();
    const LaunchItems expected = {app(u"/9"_s), twin, folder, app(u"/1"_s), app(u"/c"_s)};
    EXPECT_EQ(model.items(), expected) << "equal names keep their order";
    queue_.runPosted();
    EXPECT_EQ(files_.file(layoutPath), encodeItems(expected));
}

TEST_F(LauncherModelLayout, WithoutThePrivateFileEverythingIsLaidOutByNameWithoutFolders) {
    shownWithItems({LaunchItem::folder({gamesId, u"F"_s, {path(1)}})},
                   {{path(1), u"B"_s}, {path(2), u"A"_s}});
    ASSERT_TRUE(model_->items().front().isFolder());
    files_.setAside(layoutPath);
    makeModel().refreshApps();
    queue_.runPosted();
    EXPECT_EQ(model_->items(), (LaunchItems{app(path(2)), app(path(1))}));
}

TEST_F(LauncherModelLayout, AnExportImportedBackIsTheSameLayout) {
    std::mt19937 random(9);
    for (int round = 0; round < 200; ++round) {
        std::vector<AppInfo> installed;
        LaunchItems items;
        for (auto count = random() % 30; count > 0; --count) {
            const auto number = installed.size();
            const QString folder = QStringList{u"/Applications"_s, u"/Users/me/Applications"_s,
                                               u"/Users/meabel"_s, u"/Users/me"_s}
                                       .at(static_cast<qsizetype>(random() % 4));
            const QString path = u"%1/Äpp \"%2\".app"_s.arg(folder).arg(number);
            installed.push_back({path, u"App %1"_s.arg(random() % 10)});
            if (random() % 3 == 0 || items.empty() || !items.back().isFolder()) {
                items.push_back(app(path));
            } else {
                Folder last = *items.back().asFolder();
                last.apps.append(path);
                items.back() = LaunchItem::folder(last);
            }
            if (random() % 5 == 0) {
                items.push_back(LaunchItem::folder({QUuid::createUuid(), u"F/%1"_s.arg(number), {}}));
            }
        }
        LauncherModel& model = shownWithItems(items, installed);
        ASSERT_EQ(model.items(), items);
        const QByteArray exported = model.exportLayoutData();
        model.resetLayout();
        ASSERT_FALSE(model.importLayout(exported).has_value());
        EXPECT_EQ(model.items(), items);
        EXPECT_EQ(model.exportLayoutData(), exported);
        queue_.runPosted();
    }
}
