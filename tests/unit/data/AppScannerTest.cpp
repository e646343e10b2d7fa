#include "data/AppScanner.h"

#include "platform/BundleInformation.h"
#include "platform/RegisteredApplications.h"
#include "platform/common/RootReaders.h"
#include "support/MemoryFileSystem.h"

#include <QHash>
#include <atomic>
#include <gtest/gtest.h>
#include <semaphore>

using namespace amberquill;
using namespace Qt::StringLiterals;

namespace {

// Bundles with the identifiers that a test sets.
class FixedBundles final : public BundleInformation {
public:
    void setIdentifier(const QString& path, const QString& identifier) {
        identifiers_.insert(path, identifier);
    }

    [[nodiscard]] std::optional<QString> bundleIdentifier(const QString& bundlePath) const override {
        const auto found = identifiers_.constFind(bundlePath);
        return found == identifiers_.constEnd() ? std::nullopt : std::optional(*found);
    }

private:
    QHash<QString, QString> identifiers_;
};

// A desktop with the registered applications that a test sets.
class FixedApplications final : public RegisteredApplications {
public:
    std::vector<RegisteredApplication> applications;
    ScannedFolders folders; // that the list reports

    using RegisteredApplications::list;

    [[nodiscard]] std::vector<RegisteredApplication> list(ScannedFolders& scanned) const override {
        scanned.roots += folders.roots;
        scanned.missing += folders.missing;
        scanned.unreadable += folders.unreadable;
        return applications;
    }
    [[nodiscard]] QStringList watchedFolders() const override { return {}; }
};

// Resolving one path blocks until a test allows it, or for a very long time.
class StallingFiles final : public MemoryFileSystem {
public:
    [[nodiscard]] QString resolvingSymbolicLinks(const QString& path) const override {
        if (path == stalls) {
            constexpr std::chrono::seconds veryLong{10};
            std::ignore = answer.try_acquire_for(veryLong);
            hasAnswered = true;
        }
        return MemoryFileSystem::resolvingSymbolicLinks(path);
    }

    QString stalls;
    mutable std::binary_semaphore answer{0};
    mutable std::atomic<bool> hasAnswered = false;
};

class AppScannerTest : public testing::Test {
protected:
    [[nodiscard]] ScanResult result() const {
        return AppScanner::scan({files_, bundles_, registered_, u"/home/me"_s, ownBundle_});
    }
    [[nodiscard]] std::vector<AppInfo> scan() const { return result().apps; }

    [[nodiscard]] QStringList paths() const {
        QStringList result;
        for (const AppInfo& app : scan()) {
            result.append(app.path);
        }
        return result;
    }

    MemoryFileSystem files_;
    FixedBundles bundles_;
    FixedApplications registered_;
    QString ownBundle_;
};

} // namespace

TEST_F(AppScannerTest, TheResultListsMissingAndUnreadableFolders) {
    files_.addFolder(u"/Applications/Readable.app"_s);
    files_.addFolder(u"/Applications/Locked/Hidden.app"_s);
    files_.makeUnreadable(u"/Applications/Locked"_s);
    files_.addFolder(u"/home/me/Applications"_s);
    files_.makeUnreadable(u"/home/me/Applications"_s);
    registered_.folders = {{u"/usr/share/applications"_s}, {}, {u"/usr/share/applications/kde"_s}};
    const ScannedFolders folders = result().folders;
    EXPECT_EQ(folders.roots,
              AppScanner::searchRoots(u"/home/me"_s) + QStringList{u"/usr/share/applications"_s});
    EXPECT_EQ(folders.missing,
              (QStringList{u"/System/Applications"_s, u"/System/Cryptexes/App/System/Applications"_s}));
    EXPECT_EQ(folders.unreadable, (QStringList{u"/Applications/Locked"_s, u"/home/me/Applications"_s,
                                               u"/usr/share/applications/kde"_s}));
}

TEST_F(AppScannerTest, TheRootsAreSearchedInOrder) {
    EXPECT_EQ(AppScanner::searchRoots(u"/home/me"_s),
              (QStringList{u"/Applications"_s, u"/System/Applications"_s,
                           u"/System/Cryptexes/App/System/Applications"_s, u"/home/me/Applications"_s}));
    files_.addFolder(u"/home/me/Applications/D.app"_s);
    files_.addFolder(u"/System/Cryptexes/App/System/Applications/C.app"_s);
    files_.addFolder(u"/System/Applications/B.app"_s);
    files_.addFolder(u"/Applications/A.app"_s);
    EXPECT_EQ(paths(), (QStringList{u"/Applications/A.app"_s, u"/System/Applications/B.app"_s,
                                    u"/System/Cryptexes/App/System/Applications/C.app"_s,
                                    u"/home/me/Applications/D.app"_s}));
}

TEST_F(AppScannerTest, TheAppsOfASubFolderAreListedAtItsPosition) {
    files_.addFolder(u"/Applications/Z.app"_s);
    files_.addFolder(u"/Applications/Utilities/Terminal.app"_s);
    files_.addFolder(u"/Applications/A.app"_s);
    EXPECT_EQ(paths(), (QStringList{u"/Applications/Z.app"_s, u"/Applications/Utilities/Terminal.app"_s,
                                    u"/Applications/A.app"_s}));
}

TEST_F(AppScannerTest, FourLevelsBelowARootAreFoundAndFiveAreNot) {
    files_.addFolder(u"/Applications/a/b/c/Found.app"_s);
    files_.addFolder(u"/Applications/a/b/c/d/Lost.app"_s);
    EXPECT_EQ(paths(), QStringList{u"/Applications/a/b/c/Found.app"_s});
}

TEST_F(AppScannerTest, AnAppIsNeverDescendedInto) {
    files_.addFolder(u"/Applications/Outer.app/Inner.app"_s);
    EXPECT_EQ(paths(), QStringList{u"/Applications/Outer.app"_s});
}

TEST_F(AppScannerTest, OnlyTheExactExtensionCounts) {
    files_.addFolder(u"/Applications/Tools.App/X.app"_s);
    files_.addFolder(u"/Applications/localized.localized/Y.app"_s);
    files_.addFile(u"/Applications/Plain.app"_s);
    files_.addFile(u"/Applications/notes.txt"_s);
    EXPECT_EQ(paths(),
              (QStringList{u"/Applications/Tools.App/X.app"_s, u"/Applications/localized.localized/Y.app"_s,
                           u"/Applications/Plain.app"_s}));
}

TEST_F(AppScannerTest, TheLauncherIsNotListed) {
    ownBundle_ = u"/Applications/Amberquill.app"_s;
    files_.addFolder(ownBundle_);
    files_.addLink(u"/Applications/Link.app"_s, ownBundle_);
    files_.addFolder(u"/Applications/Other.app"_s);
    EXPECT_EQ(paths(), QStringList{u"/Applications/Other.app"_s});
}

TEST_F(AppScannerTest, TheLauncherStartedThroughALinkIsNotListed) {
    ownBundle_ = u"/opt/current/Amberquill.app"_s;
    files_.addFolder(u"/Applications/Amberquill.app"_s);
    files_.addLink(ownBundle_, u"/Applications/Amberquill.app"_s);
    EXPECT_EQ(paths(), QStringList());
}

TEST_F(AppScannerTest, AScanDoesNotWaitForTheLaunchersOwnBundle) {
    StallingFiles files;
    files.stalls = u"/far/Amberquill.app"_s;
    files.addFolder(u"/Applications/One.app"_s);
    files.addFolder(files.stalls);
    RootReaders readers({.standstill = std::chrono::milliseconds(20)});
    std::binary_semaphore answered{0};
    readers.setAnswered([&answered] { answered.release(); });
    const AppScanner::Services services{files, bundles_, registered_, u"/home/me"_s, files.stalls, &readers};
    EXPECT_EQ(AppScanner::scan(services).apps.size(), 1U);
    EXPECT_FALSE(files.hasAnswered);
    files.answer.release();
    EXPECT_TRUE(answered.try_acquire_for(std::chrono::seconds(10)));
    EXPECT_EQ(AppScanner::scan(services).apps.size(), 1U);
}

TEST_F(AppScannerTest, AnAppReachedThroughALinkIsListedOnceUnderItsFirstPath) {
    files_.addLink(u"/Applications/Link.app"_s, u"/System/Applications/Real.app"_s);
    files_.addFolder(u"/System/Applications/Real.app"_s);
    EXPECT_EQ(paths(), QStringList{u"/Applications/Link.app"_s});
}

TEST_F(AppScannerTest, ASecondCopyOfAnIdentifierIsNotListed) {
    files_.addFolder(u"/Applications/One.app"_s);
    files_.addFolder(u"/Applications/Two.app"_s);
    files_.addFolder(u"/Applications/Three.app"_s);
    bundles_.setIdentifier(u"/Applications/One.app"_s, u"org.example.same"_s);
    bundles_.setIdentifier(u"/Applications/Two.app"_s, u"org.example.same"_s);
    bundles_.setIdentifier(u"/Applications/Three.app"_s, u"org.example.other"_s);
    EXPECT_EQ(paths(), (QStringList{u"/Applications/One.app"_s, u"/Applications/Three.app"_s}));
}

TEST_F(AppScannerTest, BundlesWithoutAnIdentifierAreAllKept) {
    files_.addFolder(u"/Applications/One.app"_s);
    files_.addFolder(u"/Applications/Two.app"_s);
    EXPECT_EQ(paths().size(), 2);
}

TEST_F(AppScannerTest, TheNameIsTheDisplayNameWithoutAnyDotApp) {
    files_.addFolder(u"/Applications/A.app"_s);
    files_.addFolder(u"/Applications/B.app"_s);
    files_.setDisplayName(u"/Applications/B.app"_s, u"My.app Store.app.App"_s);
    const auto apps = scan();
    ASSERT_EQ(apps.size(), 2U);
    EXPECT_EQ(apps[0].name, u"A"_s);
    EXPECT_EQ(apps[1].name, u"My Store.App"_s);
}

TEST_F(AppScannerTest, AnUnreadableFolderIsSkipped) {
    files_.addFolder(u"/Applications/Locked/Hidden.app"_s);
    files_.makeUnreadable(u"/Applications/Locked"_s);
    files_.addFolder(u"/Applications/Open.app"_s);
    EXPECT_EQ(paths(), QStringList{u"/Applications/Open.app"_s});
}

TEST_F(AppScannerTest, LinksToFoldersAreNotDescendedInto) {
    files_.addLink(u"/Applications/Loop"_s, u"/Applications"_s);
    files_.addFolder(u"/Applications/A.app"_s);
    EXPECT_EQ(paths(), QStringList{u"/Applications/A.app"_s});
}

TEST_F(AppScannerTest, RegisteredApplicationsFollowTheBundles) {
    files_.addFolder(u"/home/me/Applications/Zed.app"_s);
    registered_.applications = {{u"/usr/share/applications/a.desktop"_s, u"A"_s},
                                {u"/usr/share/applications/b.desktop"_s, u"B.app"_s}};
    EXPECT_EQ(scan(), (std::vector<AppInfo>{{u"/home/me/Applications/Zed.app"_s, u"Zed"_s},
                                            {u"/usr/share/applications/a.desktop"_s, u"A"_s},
                                            {u"/usr/share/applications/b.desktop"_s, u"B.app"_s}}));
}

TEST_F(AppScannerTest, WithoutApplicationsTheListIsEmpty) {
    EXPECT_TRUE(scan().empty());
}
