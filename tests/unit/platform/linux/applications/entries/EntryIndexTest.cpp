#include "platform/linux/applications/entries/EntryIndex.h"
#include "support/FaultySystemCalls.h"
#include "support/OrdinaryUser.h"
#include "support/TemporaryTree.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>

using namespace amberquill;
using namespace amberquill::desktop;
using namespace Qt::StringLiterals;

namespace fs = std::filesystem;

namespace {

class EntryIndexTest : public testing::Test {
protected:
    // "id = folder/file" of each winner, in the index's order. Nothing is read: the files are empty.
    [[nodiscard]] std::vector<std::string> index(const std::vector<std::string>& folders) const {
        QStringList paths;
        for (const std::string& folder : folders) {
            paths.append(QString::fromStdString(tree_.at(folder).string()));
        }
        std::vector<std::string> lines;
        ScannedFolders scanned;
        for (const IndexedEntry& entry : indexEntries(paths, scanned)) {
            lines.push_back(entry.id.toStdString() + " = " + folders.at(entry.folder) + "/" +
                            entry.file.toStdString());
        }
        return lines;
    }

    void touch(const fs::path& path) const { tree_.write(path, {}); }

    TemporaryTree tree_;
};

using DesktopEntryIds = EntryIndexTest;
using DesktopEntryWinner = EntryIndexTest;
using DesktopEntryFolders = EntryIndexTest;
using Lines = std::vector<std::string>;

} // namespace

TEST_F(DesktopEntryFolders, MissingAndUnreadableFoldersAreReported) {
    fs::permissions(tree_.at(), fs::perms{0755});
    touch("a/readable.desktop");
    touch("a/locked/kate.desktop");
    touch("locked/kate.desktop");
    touch("file");
    const QStringList roots = {tree_.path("a"), tree_.path("missing"), tree_.path("locked"),
                               tree_.path("file")};
    for (const char* const folder : {"a/locked", "locked"}) {
        fs::permissions(tree_.at(folder), fs::perms::none);
    }
    ScannedFolders scanned;
    {
        const OrdinaryUser user;
        EXPECT_EQ(indexEntries(roots, scanned).size(), 1U);
    }
    for (const char* const folder : {"a/locked", "locked"}) {
        fs::permissions(tree_.at(folder), fs::perms{0755});
    }
    EXPECT_EQ(scanned.roots, roots);
    EXPECT_EQ(scanned.missing, (QStringList{tree_.path("missing"), tree_.path("file")}));
    EXPECT_EQ(scanned.unreadable, (QStringList{tree_.path("a/locked"), tree_.path("locked")}));
}

TEST_F(DesktopEntryIds, TheIdIsThePathBelowTheFolderWithDashes) {
    touch("a/kate.desktop");
    touch("a/kde/kate.desktop");
    touch("a/kde/deep/er.desktop");
    EXPECT_EQ(index({"a"}),
              (Lines{"kate.desktop = a/kate.desktop", "kde-deep-er.desktop = a/kde/deep/er.desktop",
                     "kde-kate.desktop = a/kde/kate.desktop"}));
}

TEST_F(DesktopEntryIds, TheFoldersOwnNameMayOccurBelowItAgain) {
    touch("share/applications/wine/applications/notes.desktop");
    EXPECT_EQ(index({"share/applications"}),
              Lines{"wine-applications-notes.desktop = share/applications/wine/applications/notes.desktop"});
}

TEST_F(DesktopEntryIds, TheyComeInByteOrder) {
    for (const char* const name : {"b", "B", "a-b", "a.b", "ab", "\xC3\xA4"}) {
        touch("a/" + std::string(name) + ".desktop");
    }
    Lines ids;
    for (const std::string& line : index({"a"})) {
        ids.push_back(line.substr(0, line.find(" = ")));
    }
    EXPECT_EQ(ids, (Lines{"B.desktop", "a-b.desktop", "a.b.desktop", "ab.desktop", "b.desktop",
                          "\xC3\xA4.desktop"}));
}

TEST_F(DesktopEntryIds, OnlyTheExactExtensionMakesAnEntry) {
    for (const char* const name : {"a.desktop~", "b.desktop.dpkg-new", "c.Desktop", "d.DESKTOP", "e",
                                   "mimeinfo.cache", "f.directory"}) {
        touch("a/" + std::string(name));
    }
    EXPECT_EQ(index({"a"}), Lines{});
}

TEST_F(DesktopEntryIds, NamesThatAreNotUtf8AreSkipped) {
    touch("a/bad\xFF.desktop");
    touch("a/bad\xFF/inner.desktop");
    touch("a/good.desktop");
    EXPECT_EQ(index({"a"}), Lines{"good.desktop = a/good.desktop"});
}

TEST_F(DesktopEntryWinner, TheEarlierFolderWins) {
    touch("a/x.desktop");
    touch("b/x.desktop");
    touch("b/y.desktop");
    EXPECT_EQ(index({"a", "b"}), (Lines{"x.desktop = a/x.desktop", "y.desktop = b/y.desktop"}));
    EXPECT_EQ(index({"b", "a"}), (Lines{"x.desktop = b/x.desktop", "y.desktop = b/y.desktop"}));
}

TEST_F(DesktopEntryWinner, DifferentPathsMayGiveTheSameId) {
    touch("a/kde-kate.desktop");
    touch("b/kde/kate.desktop");
    EXPECT_EQ(index({"a", "b"}), Lines{"kde-kate.desktop = a/kde-kate.desktop"});
    EXPECT_EQ(index({"b", "a"}), Lines{"kde-kate.desktop = b/kde/kate.desktop"});
}

TEST_F(DesktopEntryWinner, InAFolderTheFileNearestToTheTopWins) {
    touch("a/p-q-x.desktop");
    touch("a/p/q-x.desktop");
    touch("a/p/q/x.desktop");
    touch("a/p-q/x.desktop");
    EXPECT_EQ(index({"a"}), Lines{"p-q-x.desktop = a/p-q-x.desktop"});
    tree_.remove("a/p-q-x.desktop");
    EXPECT_EQ(index({"a"}), Lines{"p-q-x.desktop = a/p-q/x.desktop"}); // '-' comes before '/'
}

TEST_F(DesktopEntryWinner, NoFileIsOpened) {
    fs::permissions(tree_.at(), fs::perms{0755});
    touch("a/x.desktop");
    touch("b/x.desktop");
    fs::permissions(tree_.at("a/x.desktop"), fs::perms{0});
    const OrdinaryUser user;
    EXPECT_EQ(index({"a", "b"}), Lines{"x.desktop = a/x.desktop"});
}

TEST_F(DesktopEntryFolders, MissingUnreadableAndRepeatedFoldersDoNoHarm) {
    fs::permissions(tree_.at(), fs::perms{0755});
    touch("locked/l.desktop");
    touch("a/x.desktop");
    touch("file");
    fs::permissions(tree_.at("locked"), fs::perms{0});
    {
        const OrdinaryUser user;
        EXPECT_EQ(index({"missing", "locked", "file", "a", "a"}), Lines{"x.desktop = a/x.desktop"});
    }
    fs::permissions(tree_.at("locked"), fs::perms{0755});
}

TEST_F(DesktopEntryFolders, LinksToFilesAndFoldersAreFollowed) {
    touch("exports/app.desktop");
    touch("more/other.desktop");
    tree_.link("a/linked.desktop", "../exports/app.desktop");
    tree_.link("a/sub", tree_.at("more"));
    EXPECT_EQ(index({"a"}),
              (Lines{"linked.desktop = a/linked.desktop", "sub-other.desktop = a/sub/other.desktop"}));
}

TEST_F(DesktopEntryFolders, EntriesFoldersAndLinksAreFoundWithoutEntryTypes) {
    touch("elsewhere/c.desktop");
    touch("a/a.desktop");
    touch("a/sub/b.desktop");
    tree_.link("a/link", tree_.at("elsewhere"));
    tree_.link("a/nowhere.desktop", tree_.at("missing"));
    tree_.makeFolder("a/folder.desktop");
    const UnknownEntryTypes types;
    EXPECT_EQ(index({"a"}), (Lines{"a.desktop = a/a.desktop", "link-c.desktop = a/link/c.desktop",
                                   "sub-b.desktop = a/sub/b.desktop"}));
}

TEST_F(DesktopEntryFolders, ADanglingLinkIsSkippedAndHidesNothing) {
    tree_.link("a/x.desktop", "missing");
    tree_.link("a/sub", "missing");
    touch("b/x.desktop");
    EXPECT_EQ(index({"a", "b"}), Lines{"x.desktop = b/x.desktop"});
}

TEST_F(DesktopEntryFolders, CyclesOfLinksEnd) {
    touch("a/x.desktop");
    tree_.link("a/self", ".");
    tree_.link("a/sub/up", "../..");
    tree_.link("a/sub/a", tree_.at("a"));
    tree_.link("a/one", "two");
    tree_.link("a/two", "one");
    tree_.link("a/me.desktop", "me.desktop");
    // The first link leads to the tree and down again. The second visit finds the folder inside itself.
    EXPECT_EQ(index({"a"}), Lines{"x.desktop = a/x.desktop"});
}

TEST_F(DesktopEntryFolders, VisitsOfALinkedFolderAreBounded) {
    touch("deep/x.desktop");
    // Each level has a hundred links to the next: 100^4 paths.
    for (int level = 0; level < 4; ++level) {
        const fs::path next = level == 3 ? tree_.at("deep") : tree_.at("level" + std::to_string(level + 1));
        for (int link = 0; link < 100; ++link) {
            tree_.link("level" + std::to_string(level) + "/" + std::to_string(link), next);
        }
    }
    EXPECT_EQ(index({"level0"}).size(), static_cast<std::size_t>(maximumVisitsOfFolder));
}

TEST_F(DesktopEntryFolders, TheDepthIsBounded) {
    fs::path path = "a";
    for (int level = 1; level <= maximumEntryDepth; ++level) {
        path /= "d";
    }
    touch(path / "in.desktop");
    touch(path / "d" / "out.desktop");
    const Lines found = index({"a"});
    ASSERT_EQ(found.size(), 1U);
    EXPECT_TRUE(found.front().ends_with("/in.desktop")) << found.front();
}

TEST_F(DesktopEntryFolders, AFolderWithTheExtensionIsSkipped) {
    touch("a/x.desktop/inner.desktop");
    tree_.link("a/y.desktop", "x.desktop");
    touch("b/x.desktop");
    touch("b/y.desktop");
    EXPECT_EQ(index({"a", "b"}), (Lines{"x.desktop = b/x.desktop", "y.desktop = b/y.desktop"}));
}

TEST_F(DesktopEntryFolders, OtherFilesWithTheExtensionTakeTheId) {
    tree_.makeFolder("a");
    ASSERT_EQ(::mkfifo(tree_.at("a/pipe.desktop").c_str(), 0600), 0);
    const int socket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_un address = {.sun_family = AF_UNIX, .sun_path = {}};
    const std::string socketPath = tree_.at("a/socket.desktop").string();
    ASSERT_LT(socketPath.size(), sizeof address.sun_path);
    std::copy(socketPath.begin(), socketPath.end(), std::begin(address.sun_path));
    ASSERT_EQ(::bind(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    ::close(socket);
    tree_.link("a/null.desktop", "/dev/null");
    for (const char* const name : {"b/pipe.desktop", "b/socket.desktop", "b/null.desktop"}) {
        touch(name);
    }
    EXPECT_EQ(index({"a", "b"}), (Lines{"null.desktop = a/null.desktop", "pipe.desktop = a/pipe.desktop",
                                        "socket.desktop = a/socket.desktop"}));
}

TEST(DesktopIdFor, ThePathBelowTheFirstFolderThatHoldsIt) {
    const QStringList folders{u"/home/u/.local/share/applications"_s, u"/usr/share/applications"_s};
    EXPECT_EQ(desktopIdFor(u"/usr/share/applications/kde/kate.desktop", folders), u"kde-kate.desktop"_s);
    EXPECT_EQ(desktopIdFor(u"/home/u/.local/share/applications/wine/applications/n.desktop", folders),
              u"wine-applications-n.desktop"_s);
}

TEST(DesktopIdFor, NoneForAPathOutsideTheFolders) {
    const QStringList folders{u"/usr/share/applications"_s};
    for (const QString& path : {u"/usr/share/applications2/a.desktop"_s, u"/opt/a.desktop"_s, u"a.desktop"_s,
                                u"/usr/share/applications"_s, u"/usr/share/applications/"_s,
                                u"/usr/share/applications/a.txt"_s, QString()}) {
        EXPECT_EQ(desktopIdFor(path, folders), std::nullopt) << path.toStdString();
    }
}

namespace {

const DataFolders folders{{u"/a/applications/share"_s, u"/usr/share"_s}};

} // namespace

TEST(ApplicationId, IsThePathBelowTheApplicationFolderWithDashes) {
    EXPECT_EQ(applicationIdFor(u"/usr/share/applications/org.example.Calc.desktop"_s, folders),
              u"org.example.Calc"_s);
    EXPECT_EQ(applicationIdFor(u"/usr/share/applications/kde/calc.desktop"_s, folders), u"kde-calc"_s);
}

TEST(ApplicationId, TheApplicationFoldersNameMayBeInThePathTwice) {
    EXPECT_EQ(applicationIdFor(u"/a/applications/share/applications/applications/x.desktop"_s, folders),
              u"applications-x"_s);
}

TEST(ApplicationId, OutsideOfTheFoldersItIsTheName) {
    EXPECT_EQ(applicationIdFor(u"/home/u/Desktop/calc.desktop"_s, folders), u"calc"_s);
}

TEST(ApplicationId, OtherFilesHaveNone) {
    EXPECT_EQ(applicationIdFor(u"/usr/share/applications/Calc.app"_s, folders), QString());
    EXPECT_EQ(applicationIdFor({}, folders), QString());
}
