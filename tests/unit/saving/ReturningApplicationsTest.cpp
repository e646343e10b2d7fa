#include "data/AppScanner.h"
#include "data/LayoutCoding.h"
#include "model/LauncherModel.h"
#include "platform/linux/applications/bundles/BundlePropertyList.h"
#include "platform/linux/applications/entries/DesktopEntryApplications.h"
#include "platform/linux/files/PosixFileSystem.h"
#include "support/ManualQueue.h"
#include "support/MemoryPreferences.h"
#include "support/OrdinaryUser.h"
#include "support/TemporaryTree.h"

#include <gtest/gtest.h>
#include <memory>

using namespace amberquill;
using namespace amberquill::desktop;
using namespace Qt::StringLiterals;
namespace fs = std::filesystem;

namespace {

// A launcher over real files: desktop entries of the system and of the user, bundles in the home folder, and
// saved files. In each test, applications disappear for a time and the arrangement must stay.
class ReturningApplications : public testing::Test {
protected:
    void SetUp() override {
        for (const char* const name : {"mail", "maps", "music", "notes"}) {
            tree_.write(entry("system", name), content(name));
        }
        for (const char* const name : {"paint", "photos"}) {
            tree_.write(entry("own", name), content(name));
        }
        tree_.makeFolder("home/Applications/Editor.app/Contents");
        start();
        arrange();
        ASSERT_EQ(model_->items(), arranged_);
    }

    [[nodiscard]] static fs::path entry(const char* folder, const char* name) {
        return fs::path(folder) / "applications" / (std::string(name) + ".desktop");
    }

    static QByteArray content(const char* name) {
        return QByteArray("[Desktop Entry]\nType=Application\nExec=true\nName=") + name + "\n";
    }

    // Starts the program with these folders of desktop entries in its environment.
    void start(const std::vector<const char*>& dataFolders = {"own", "system"}) {
        EntrySettings settings;
        for (const char* const folder : dataFolders) {
            settings.dataFolders.folders.append(tree_.path(folder));
        }
        entries_ = std::make_unique<DesktopEntryApplications>(settings);
        model_ = std::make_unique<LauncherModel>(LauncherModel::Services{
            .queue = queue_,
            .files = files_,
            .preferences = preferences_,
            .applicationSupport = tree_.path("data"),
            .scan =
                [this] {
                    return AppScanner::scan({files_, bundles_, *entries_, tree_.path("home"), {}});
                },
        });
        model_->refreshApps();
        queue_.runPosted();
    }

    void stop() {
        queue_.runPosted();
        model_->flushSaves();
        model_.reset();
    }

    void rescan() {
        model_->refreshApps();
        queue_.runPosted();
    }

    // Arranges all applications out of alphabetical order, some in a folder.
    void arrange() {
        const Folder media{QUuid::createUuid(),
                           u"Media"_s,
                           {at("own", "photos"), at("system", "music"), at("own", "paint")}};
        arranged_ = {LaunchItem::app(at("system", "notes")), LaunchItem::folder(media),
                     LaunchItem::app(tree_.path("home/Applications/Editor.app")),
                     LaunchItem::app(at("system", "maps")), LaunchItem::app(at("system", "mail"))};
        EXPECT_FALSE(model_->importLayout(
            encodeLayoutFile({.exportedAt = {}, .columns = 7, .rows = 5, .items = arranged_})));
    }

    [[nodiscard]] QString at(const char* folder, const char* name) const {
        return QString::fromStdString(tree_.at(entry(folder, name)).string());
    }

    // Expects the arrangement now and after the next start.
    void expectArranged() {
        EXPECT_EQ(model_->items(), arranged_);
        queue_.advance(60);
        EXPECT_EQ(model_->items(), arranged_);
        stop();
        const auto saved = decodeItems(tree_.read("data/Amberquill/layout.json"));
        ASSERT_TRUE(std::holds_alternative<LaunchItems>(saved));
        EXPECT_EQ(std::get<LaunchItems>(saved), arranged_);
        start();
        EXPECT_EQ(model_->items(), arranged_);
    }

    void setMode(const char* folder, unsigned mode) const {
        fs::permissions(tree_.at(folder), static_cast<fs::perms>(mode));
    }

    TemporaryTree tree_;
    ManualQueue queue_;
    PosixFileSystem files_;
    PropertyListBundles bundles_;
    MemoryPreferences preferences_;
    std::unique_ptr<DesktopEntryApplications> entries_;
    std::unique_ptr<LauncherModel> model_;
    LaunchItems arranged_;
};

} // namespace

TEST_F(ReturningApplications, AnUpgradeTakesAnEntryAwayForASecond) {
    tree_.remove(entry("system", "music"));
    rescan();
    queue_.advance(1.2);
    tree_.write(entry("system", "music"), content("music"));
    rescan();
    expectArranged();
}

TEST_F(ReturningApplications, AnUpgradeTakesAMinute) {
    for (const char* const name : {"notes", "music", "maps"}) {
        tree_.remove(entry("system", name));
        rescan();
        queue_.advance(20);
    }
    EXPECT_EQ(model_->items().size(), arranged_.size() - 2);
    for (const char* const name : {"maps", "notes", "music"}) {
        tree_.write(entry("system", name), content(name));
        rescan();
    }
    expectArranged();
}

TEST_F(ReturningApplications, AnEntryIsRewrittenSlowlyInPlace) {
    const QByteArray whole = content("music");
    for (qsizetype written = 0; written <= whole.size(); written += 9) {
        tree_.write(entry("system", "music"), whole.first(written));
        rescan();
        queue_.advance(0.5);
    }
    tree_.write(entry("system", "music"), whole);
    rescan();
    expectArranged();
}

TEST_F(ReturningApplications, TheFolderOfEntriesIsAwayForALongTime) {
    fs::rename(tree_.at("system"), tree_.at("away"));
    rescan();
    queue_.advance(3600);
    rescan();
    EXPECT_EQ(model_->items(), arranged_);
    fs::rename(tree_.at("away"), tree_.at("system"));
    rescan();
    expectArranged();
}

TEST_F(ReturningApplications, TheFolderOfEntriesIsAwayDuringAStart) {
    stop();
    fs::rename(tree_.at("system"), tree_.at("away"));
    start();
    EXPECT_EQ(model_->items().size(), 2U);
    fs::rename(tree_.at("away"), tree_.at("system"));
    rescan();
    expectArranged();
}

TEST_F(ReturningApplications, AMountIsAwayAndLeavesItsEmptyFolder) {
    fs::rename(tree_.at("system/applications"), tree_.at("mounted"));
    tree_.makeFolder("system/applications");
    rescan();
    queue_.advance(9);
    EXPECT_EQ(model_->items(), arranged_);
    queue_.advance(9);
    EXPECT_EQ(model_->items().size(), 2U) << "the folder and the bundle";
    tree_.remove("system/applications");
    fs::rename(tree_.at("mounted"), tree_.at("system/applications"));
    rescan();
    expectArranged();
}

TEST_F(ReturningApplications, TheFolderOfEntriesCannotBeRead) {
    setMode("", 0755);
    setMode("system/applications", 0700);
    {
        const OrdinaryUser user;
        rescan();
        EXPECT_EQ(model_->items(), arranged_);
    }
    stop();
    setMode("data", 0777);
    setMode("data/Amberquill", 0777);
    setMode("data/Amberquill/layout.json", 0666);
    {
        const OrdinaryUser user;
        start();
        queue_.advance(3600);
        EXPECT_EQ(model_->items(), arranged_) << "after a start, too";
        stop();
    }
    setMode("system/applications", 0755);
    start();
    expectArranged();
}

TEST_F(ReturningApplications, TheFolderOfBundlesIsAMountThatComesAndGoes) {
    fs::rename(tree_.at("home/Applications"), tree_.at("mounted"));
    rescan();
    queue_.advance(3600);
    fs::rename(tree_.at("mounted"), tree_.at("home/Applications"));
    rescan();
    expectArranged();
}

TEST_F(ReturningApplications, TheProgramIsStartedOnceWithoutTheFoldersOfTheSystem) {
    stop();
    start({"own"});
    EXPECT_EQ(model_->items().size(), 2U);
    stop();
    start();
    expectArranged();
}

TEST_F(ReturningApplications, TheProgramIsStartedOnceWithoutAnyFolder) {
    stop();
    const fs::path home = tree_.at("home");
    fs::rename(home, tree_.at("elsewhere"));
    start({});
    EXPECT_EQ(model_->items().size(), 1U) << "the folder stays, and is empty";
    stop();
    fs::rename(tree_.at("elsewhere"), home);
    start();
    expectArranged();
}

TEST_F(ReturningApplications, LinksLeadNowhereForAWhileAsThoseOfExportsDo) {
    fs::rename(tree_.at("system/applications"), tree_.at("app"));
    tree_.makeFolder("system/applications");
    for (const char* const name : {"mail", "maps", "music", "notes"}) {
        tree_.link(entry("system", name), fs::path("../../app") / (std::string(name) + ".desktop"));
    }
    rescan();
    EXPECT_EQ(model_->items(), arranged_);
    fs::rename(tree_.at("app"), tree_.at("away"));
    rescan();
    queue_.advance(60);
    EXPECT_EQ(model_->items().size(), 2U);
    fs::rename(tree_.at("away"), tree_.at("app"));
    rescan();
    expectArranged();
}

TEST_F(ReturningApplications, TheUsersOwnEntryStandsForTheSystemsAndGoesAgain) {
    tree_.write(entry("own", "music"), content("music"));
    rescan();
    EXPECT_EQ(model_->items()[1].asFolder()->apps[1], at("own", "music"));
    queue_.advance(60);
    tree_.remove(entry("own", "music"));
    rescan();
    expectArranged();
}
