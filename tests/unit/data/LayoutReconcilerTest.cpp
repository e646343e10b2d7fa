#include "data/LayoutReconciler.h"

#include "data/NameOrder.h"

#include <gtest/gtest.h>
#include <random>

using namespace amberquill;
using namespace Qt::StringLiterals;

namespace {

const QUuid firstId = QUuid::fromString(u"3F2504E0-4F89-11D3-9A0C-0305E82C3301"_s);
const QUuid secondId = QUuid::fromString(u"3F2504E0-4F89-11D3-9A0C-0305E82C3302"_s);

LaunchItems reconcile(const LaunchItems& saved, const std::vector<AppInfo>& installed,
                      const std::optional<QString>& newAppsFolder = std::nullopt) {
    static const NameOrder order(QLocale(QLocale::English, QLocale::UnitedStates));
    return LayoutReconciler::reconcile(saved, installed, newAppsFolder, order);
}

AppInfo installedAt(const QString& path) {
    return {path, nameFromPath(path)};
}

LaunchItem app(const QString& path) {
    return LaunchItem::app(path);
}

} // namespace

TEST(LayoutReconciler, AnEmptyLayoutGetsAllAppsSortedByName) {
    EXPECT_EQ(reconcile({}, {{u"/z.app"_s, u"Alpha"_s}, {u"/a.app"_s, u"beta"_s}, {u"/m.app"_s, u"Gamma"_s}}),
              (LaunchItems{app(u"/z.app"_s), app(u"/a.app"_s), app(u"/m.app"_s)}));
}

TEST(LayoutReconciler, AnEmptyLayoutWithAFolderNameGetsOneFolderOfAllApps) {
    const LaunchItems result = reconcile({}, {{u"/b.app"_s, u"B"_s}, {u"/a.app"_s, u"A"_s}}, u"Other Apps"_s);
    ASSERT_EQ(result.size(), 1U);
    const Folder* folder = result.front().asFolder();
    ASSERT_NE(folder, nullptr);
    EXPECT_EQ(folder->name, u"Other Apps"_s);
    EXPECT_EQ(folder->apps, (QStringList{u"/a.app"_s, u"/b.app"_s}));
    EXPECT_FALSE(folder->id.isNull());
    EXPECT_NE(folder->id,
              reconcile({}, {{u"/b.app"_s, u"B"_s}, {u"/a.app"_s, u"A"_s}}, u"x"_s).front().asFolder()->id);
}

TEST(LayoutReconciler, ASingleNewAppIsAPlainItemEvenWithAFolderName) {
    EXPECT_EQ(reconcile({}, {installedAt(u"/a.app"_s)}, u"Other Apps"_s), LaunchItems{app(u"/a.app"_s)});
}

TEST(LayoutReconciler, WithoutNewAppsNoFolderIsMade) {
    EXPECT_EQ(reconcile({app(u"/a.app"_s)}, {installedAt(u"/a.app"_s)}, u"Other Apps"_s),
              LaunchItems{app(u"/a.app"_s)});
}

TEST(LayoutReconciler, ARepeatedPathStaysAtItsFirstPlaceOnly) {
    const std::vector<AppInfo> installed = {installedAt(u"/a.app"_s), installedAt(u"/b.app"_s)};
    EXPECT_EQ(reconcile({app(u"/a.app"_s),
                         LaunchItem::folder({firstId, u"F"_s, {u"/a.app"_s, u"/b.app"_s, u"/b.app"_s}}),
                         app(u"/b.app"_s)},
                        installed),
              (LaunchItems{app(u"/a.app"_s), LaunchItem::folder({firstId, u"F"_s, {u"/b.app"_s}})}));
}

TEST(LayoutReconciler, AMovedAppKeepsItsPlaceWithItsNewPath) {
    EXPECT_EQ(reconcile({app(u"/Applications/X.app"_s), app(u"/b.app"_s)},
                        {installedAt(u"/b.app"_s), installedAt(u"/home/me/Applications/X.app"_s)}),
              (LaunchItems{app(u"/home/me/Applications/X.app"_s), app(u"/b.app"_s)}));
}

TEST(LayoutReconciler, APathWithATrailingSlashHasAFileName) {
    EXPECT_EQ(reconcile({app(u"/Applications/X.app/"_s), app(u"/Applications/A.app"_s)},
                        {installedAt(u"/Applications/A.app"_s), installedAt(u"/Applications/X.app"_s)}),
              (LaunchItems{app(u"/Applications/X.app"_s), app(u"/Applications/A.app"_s)}));
}

TEST(LayoutReconciler, AMovedAppIsFollowedInsideAFolder) {
    EXPECT_EQ(
        reconcile({LaunchItem::folder({firstId, u"F"_s, {u"/old/X.app"_s}})}, {installedAt(u"/new/X.app"_s)}),
        LaunchItems{LaunchItem::folder({firstId, u"F"_s, {u"/new/X.app"_s}})});
}

TEST(LayoutReconciler, AMissingAppDoesNotTakeACopyThatTheLayoutHas) {
    EXPECT_EQ(reconcile({app(u"/Volumes/Old/X.app"_s), app(u"/Applications/X.app"_s)},
                        {installedAt(u"/Applications/X.app"_s)}),
              LaunchItems{app(u"/Applications/X.app"_s)});
}

TEST(LayoutReconciler, AMissingAppDoesNotTakeACopyThatAFolderHas) {
    const std::vector<AppInfo> installed = {installedAt(u"/Applications/X.app"_s), installedAt(u"/b.app"_s)};
    EXPECT_EQ(
        reconcile({app(u"/Volumes/Old/X.app"_s), app(u"/b.app"_s),
                   LaunchItem::folder({firstId, u"F"_s, {u"/Applications/X.app"_s}})},
                  installed),
        (LaunchItems{app(u"/b.app"_s), LaunchItem::folder({firstId, u"F"_s, {u"/Applications/X.app"_s}})}));
}

TEST(LayoutReconciler, TwoMovedAppsWithOneFileNameTakeTheCopiesInInstalledOrder) {
    EXPECT_EQ(reconcile({app(u"/gone1/X.app"_s), app(u"/gone2/X.app"_s), app(u"/gone3/X.app"_s)},
                        {installedAt(u"/one/X.app"_s), installedAt(u"/two/X.app"_s)}),
              (LaunchItems{app(u"/one/X.app"_s), app(u"/two/X.app"_s)}));
}

TEST(LayoutReconciler, FoldersKeepTheirIdAndNameEvenWithoutApps) {
    EXPECT_EQ(reconcile({LaunchItem::folder({firstId, u"Gone"_s, {u"/gone.app"_s}}),
                         LaunchItem::folder({secondId, u"One"_s, {u"/a.app"_s, u"/gone.app"_s}})},
                        {installedAt(u"/a.app"_s)}),
              (LaunchItems{LaunchItem::folder({firstId, u"Gone"_s, {}}),
                           LaunchItem::folder({secondId, u"One"_s, {u"/a.app"_s}})}));
}

TEST(LayoutReconciler, NewAppsFollowTheSavedOnesInOrderOfNames) {
    EXPECT_EQ(reconcile({app(u"/z.app"_s)},
                        {{u"/10.app"_s, u"App 10"_s}, {u"/9.app"_s, u"App 9"_s}, {u"/z.app"_s, u"Z"_s}}),
              (LaunchItems{app(u"/z.app"_s), app(u"/9.app"_s), app(u"/10.app"_s)}));
}

TEST(LayoutReconciler, NewAppsWithEqualNamesKeepTheInstalledOrder) {
    EXPECT_EQ(reconcile({}, {{u"/2.app"_s, u"Same"_s}, {u"/1.app"_s, u"Same"_s}, {u"/3.app"_s, u"same"_s}}),
              (LaunchItems{app(u"/2.app"_s), app(u"/1.app"_s), app(u"/3.app"_s)}));
}

namespace {

struct RandomLayout {
    LaunchItems items;
    std::vector<AppInfo> installed;
};

RandomLayout randomLayout(unsigned seed) {
    std::mt19937 random(seed);
    const auto below = [&random](int limit) {
        return static_cast<int>(random() % static_cast<unsigned>(limit));
    };
    const auto path = [&below] {
        return u"/%1/App %2.app"_s.arg(QStringList{u"one"_s, u"two"_s, u"gone"_s}.at(below(3)))
            .arg(below(12));
    };
    RandomLayout layout;
    QSet<QString> taken;
    for (int i = below(20); i > 0; --i) {
        const QString installed = path();
        if (!taken.contains(installed)) {
            taken.insert(installed);
            layout.installed.push_back(installedAt(installed));
        }
    }
    for (int i = below(15); i > 0; --i) {
        if (below(3) > 0) {
            layout.items.push_back(app(path()));
            continue;
        }
        Folder folder{QUuid::createUuid(), u"F"_s, {}};
        for (int member = below(5); member > 0; --member) {
            folder.apps.append(path());
        }
        layout.items.push_back(LaunchItem::folder(folder));
    }
    return layout;
}

QStringList allPaths(const LaunchItems& items) {
    QStringList paths;
    for (const LaunchItem& item : items) {
        if (const QString* path = item.asApp()) {
            paths.append(*path);
        } else {
            paths.append(item.asFolder()->apps);
        }
    }
    return paths;
}

} // namespace

TEST(LayoutReconciler, AnyLayoutGetsEveryInstalledAppExactlyOnce) {
    for (unsigned seed = 0; seed < 2000; ++seed) {
        const RandomLayout layout = randomLayout(seed);
        QStringList installed;
        for (const AppInfo& info : layout.installed) {
            installed.append(info.path);
        }
        QStringList placed = allPaths(reconcile(layout.items, layout.installed));
        installed.sort();
        placed.sort();
        ASSERT_EQ(placed, installed) << seed;
    }
}

TEST(LayoutReconciler, ReconcilingAgainChangesNothing) {
    for (unsigned seed = 0; seed < 2000; ++seed) {
        const RandomLayout layout = randomLayout(seed);
        const LaunchItems once = reconcile(layout.items, layout.installed);
        ASSERT_EQ(reconcile(once, layout.installed), once) << seed;
    }
}
