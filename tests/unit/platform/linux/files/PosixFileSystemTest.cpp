#include "platform/linux/files/PosixFileSystem.h"

#include "support/FaultySystemCalls.h"
#include "support/OrdinaryUser.h"
#include "support/TemporaryTree.h"
#include "support/WaitUntil.h"

#include <atomic>
#include <csignal>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <thread>

using namespace amberquill;
using namespace amberquill::desktop;
using namespace Qt::StringLiterals;
namespace fs = std::filesystem;

namespace {

constexpr qint64 limit = 1000;

// The names in a folder, hidden files included.
QStringList namesIn(const fs::path& folder) {
    QStringList names;
    for (const auto& entry : fs::directory_iterator(folder)) {
        names.append(QString::fromStdString(entry.path().filename().string()));
    }
    names.sort();
    return names;
}

mode_t modeOf(const fs::path& path) {
    struct stat status = {};
    EXPECT_EQ(::stat(path.c_str(), &status), 0) << path;
    return status.st_mode & mode_t{07777};
}

class PosixFileSystemTest : public testing::Test {
protected:
    // The names of a listing; names of folders end in a slash. A name that starts with "!": no listing.
    [[nodiscard]] QStringList listed(const QString& path) const {
        const auto entries = files_.listFolder(path);
        if (!entries) {
            return {u"!none"_s};
        }
        QStringList names;
        for (const FolderEntry& entry : *entries) {
            names.append(entry.isDirectory ? entry.name + QLatin1Char('/') : entry.name);
        }
        return names;
    }

    // Lets the ordinary user reach the tree.
    void openToAll() const { fs::permissions(tree_.at(), fs::perms{0755}); }

    TemporaryTree tree_;
    PosixFileSystem files_;
};

using ListFolder = PosixFileSystemTest;
using ResolvingSymbolicLinks = PosixFileSystemTest;
using DisplayName = PosixFileSystemTest;
using ReadFile = PosixFileSystemTest;
using WriteAtomically = PosixFileSystemTest;
using SetAside = PosixFileSystemTest;
using Remove = PosixFileSystemTest;

} // namespace

TEST_F(ListFolder, NamesComeInByteOrder) {
    for (const char* const name : {"b", "a", "Z", "\xC3\xA4", "10", "9"}) {
        tree_.write(name, {});
    }
    EXPECT_EQ(listed(tree_.path()), (QStringList{u"10"_s, u"9"_s, u"Z"_s, u"a"_s, u"b"_s, u"ä"_s}));
}

TEST_F(ListFolder, ARealFolderIsADirectoryAndALinkToOneIsNot) {
    tree_.makeFolder("folder");
    tree_.write("file", {});
    tree_.link("link", "folder");
    tree_.link("nowhere", "missing");
    EXPECT_EQ(listed(tree_.path()), (QStringList{u"file"_s, u"folder/"_s, u"link"_s, u"nowhere"_s}));
}

TEST_F(ListFolder, WithoutEntryTypesALinkToAFolderIsNotADirectory) {
    tree_.makeFolder("folder");
    tree_.write("file", {});
    tree_.link("link", "folder");
    const UnknownEntryTypes types;
    EXPECT_EQ(listed(tree_.path()), (QStringList{u"file"_s, u"folder/"_s, u"link"_s}));
}

TEST_F(ListFolder, NamesWithALeadingDotAreHidden) {
    tree_.write(".secret", {});
    tree_.makeFolder(".config");
    tree_.write("seen", {});
    EXPECT_EQ(listed(tree_.path()), QStringList{u"seen"_s});
}

TEST_F(ListFolder, ALineOfTheHiddenListHidesThatExactName) {
    for (const char* const name : {"one", "two", "two words", "Three", "twofold"}) {
        tree_.write(name, {});
    }
    tree_.write(".hidden", "one\ntwo\nthree\n two words");
    EXPECT_EQ(listed(tree_.path()), (QStringList{u"Three"_s, u"two words"_s, u"twofold"_s}));
}

TEST_F(ListFolder, AHiddenListThatIsTooLargeOrNotAFileHidesNothing) {
    tree_.write("name", {});
    tree_.write(".hidden", "name\n" + QByteArray(qsizetype{65} * 1024, 'x'));
    EXPECT_EQ(listed(tree_.path()), QStringList{u"name"_s});
    tree_.remove(".hidden");
    ASSERT_EQ(::mkfifo(tree_.at(".hidden").c_str(), 0600), 0);
    EXPECT_EQ(listed(tree_.path()), QStringList{u"name"_s});
}

TEST_F(ListFolder, NamesThatAreNotUtf8AreSkipped) {
    tree_.write("good", {});
    tree_.write("bad\xFF", {});
    EXPECT_EQ(listed(tree_.path()), QStringList{u"good"_s});
}

TEST_F(ListFolder, AByteOrderMarkIsPartOfAName) {
    tree_.write("\xEF\xBB\xBF"
                "file",
                "content");
    const auto entries = files_.listFolder(tree_.path());
    ASSERT_TRUE(entries);
    ASSERT_EQ(entries->size(), 1U);
    EXPECT_EQ(files_.readFile(tree_.path() + u'/' + entries->front().name, limit), "content");
}

TEST_F(ListFolder, AnEmptyFolderListsNothingAndAMissingOneCannotBeListed) {
    tree_.makeFolder("empty");
    tree_.write("file", {});
    EXPECT_EQ(listed(tree_.path("empty")), QStringList());
    EXPECT_EQ(files_.listFolder(tree_.path("missing")), std::nullopt);
    EXPECT_EQ(files_.listFolder(tree_.path("file")), std::nullopt);
    EXPECT_EQ(files_.listFolder(u"relative"_s), std::nullopt);
    EXPECT_EQ(files_.listFolder(QString()), std::nullopt);
}

TEST_F(ListFolder, AFolderThatMayNotBeReadCannotBeListed) {
    openToAll();
    tree_.write("locked/name", {});
    fs::permissions(tree_.at("locked"), fs::perms{0711});
    const OrdinaryUser user;
    EXPECT_EQ(files_.listFolder(tree_.path("locked")), std::nullopt);
}

TEST_F(ListFolder, AFolderReachedThroughALinkIsListed) {
    tree_.write("folder/name", {});
    tree_.link("link", "folder");
    EXPECT_EQ(listed(tree_.path("link")), QStringList{u"name"_s});
}

TEST_F(ResolvingSymbolicLinks, EveryLinkOnTheWayIsFollowed) {
    tree_.write("real/file", {});
    tree_.link("folder", "real");
    tree_.link("real/link", "file");
    const QString real = QString::fromStdString(fs::canonical(tree_.at("real/file")).string());
    EXPECT_EQ(files_.resolvingSymbolicLinks(tree_.path("folder/link")), real);
    EXPECT_EQ(files_.resolvingSymbolicLinks(tree_.path("folder/../real/./file")), real);
}

TEST_F(ResolvingSymbolicLinks, ABrokenPathIsReturnedUnchanged) {
    tree_.link("loop", "loop");
    tree_.link("dangling", "missing");
    for (const char* const name : {"loop", "dangling", "missing"}) {
        EXPECT_EQ(files_.resolvingSymbolicLinks(tree_.path(name)), tree_.path(name));
    }
    EXPECT_EQ(files_.resolvingSymbolicLinks(u"relative"_s), u"relative"_s);
}

TEST_F(DisplayName, ItIsTheLastComponent) {
    EXPECT_EQ(files_.displayName(u"/a/Größe.app"_s), u"Größe.app"_s);
    EXPECT_EQ(files_.displayName(u"/a/b/"_s), u"b"_s);
    EXPECT_EQ(files_.displayName(u"/"_s), u"/"_s);
    EXPECT_EQ(files_.displayName(u"name"_s), u"name"_s);
    EXPECT_EQ(files_.displayName(QString()), QString());
}

TEST_F(ReadFile, AFileIsReadWholeOrNotAtAll) {
    EXPECT_EQ(files_.readFile(tree_.write("file", "con\0tent"_ba), limit), "con\0tent"_ba);
    EXPECT_EQ(files_.readFile(tree_.write("empty", {}), limit), QByteArray());
    EXPECT_EQ(files_.readFile(tree_.path("missing"), limit), std::nullopt);
    EXPECT_EQ(files_.readFile(u"relative"_s, limit), std::nullopt);
    EXPECT_EQ(files_.readFile(tree_.path("file") + QChar::Null + u"more"_s, limit), std::nullopt);
}

TEST_F(PosixFileSystemTest, OnlyARegularFileHasASize) {
    EXPECT_EQ(files_.fileSize(tree_.write("file", "content")), 7);
    EXPECT_EQ(files_.fileSize(tree_.write("empty", {})), 0);
    EXPECT_EQ(files_.fileSize(tree_.path("missing")), std::nullopt);
    EXPECT_EQ(files_.fileSize(tree_.path()), std::nullopt) << "a folder";
    EXPECT_EQ(files_.fileSize(u"relative"_s), std::nullopt);
}

TEST_F(ReadFile, TheLimitIsTheLastSizeThatIsRead) {
    const QString path = tree_.write("file", QByteArray(100, 'x'));
    EXPECT_EQ(files_.readFile(path, 100), QByteArray(100, 'x'));
    EXPECT_EQ(files_.readFile(path, 99), std::nullopt);
}

TEST_F(ReadFile, AFileLargerThanOneReadIsReadWhole) {
    QByteArray content;
    for (int line = 0; line < 100'000; ++line) {
        content += QByteArray::number(line);
    }
    EXPECT_EQ(files_.readFile(tree_.write("large", content), content.size()), content);
}

TEST_F(ReadFile, AFileWithoutAKnownSizeIsReadUpToTheLimit) {
    const auto content = files_.readFile(u"/proc/self/status"_s, 100'000);
    ASSERT_TRUE(content);
    EXPECT_TRUE(content->startsWith("Name:")) << content->toStdString();
    EXPECT_EQ(files_.readFile(u"/proc/self/status"_s, 10), std::nullopt);
}

TEST_F(ReadFile, LinksAreFollowed) {
    tree_.write("file", "content");
    EXPECT_EQ(files_.readFile(tree_.link("link", "file"), limit), "content");
}

TEST_F(ReadFile, OtherThanRegularFilesAreRefusedWithoutBlocking) {
    ASSERT_EQ(::mkfifo(tree_.at("pipe").c_str(), 0600), 0);
    EXPECT_EQ(files_.readFile(tree_.path("pipe"), limit), std::nullopt);
    EXPECT_EQ(files_.readFile(u"/dev/zero"_s, limit), std::nullopt);
    EXPECT_EQ(files_.readFile(tree_.makeFolder("folder"), limit), std::nullopt);
}

TEST_F(ReadFile, AFileWithoutReadPermissionIsNotRead) {
    openToAll();
    const QString path = tree_.write("locked", "content");
    fs::permissions(tree_.at("locked"), fs::perms{0200});
    const OrdinaryUser user;
    EXPECT_EQ(files_.readFile(path, limit), std::nullopt);
}

TEST_F(ReadFile, TheReasonOfAFailureIsReported) {
    openToAll();
    const QString locked = tree_.write("locked", "content");
    fs::permissions(tree_.at("locked"), fs::perms{0200});
    const auto reason = [&](const QString& path, qint64 largest) {
        std::error_code error;
        EXPECT_EQ(files_.readFile(path, largest, error), std::nullopt);
        return error;
    };
    EXPECT_EQ(reason(tree_.path("missing"), limit), std::errc::no_such_file_or_directory);
    EXPECT_EQ(reason(u"relative"_s, limit), std::errc::no_such_file_or_directory);
    EXPECT_EQ(reason(tree_.path(), limit), std::errc::is_a_directory);
    EXPECT_EQ(reason(u"/dev/zero"_s, limit), std::errc::invalid_argument);
    EXPECT_EQ(reason(tree_.write("large", "content"), 6), std::errc::file_too_large);
    EXPECT_EQ(reason(u"/proc/self/status"_s, 10), std::errc::file_too_large);
    const OrdinaryUser user;
    EXPECT_EQ(reason(locked, limit), std::errc::permission_denied);
}

TEST_F(WriteAtomically, MissingFoldersAreMadeForTheUserAlone) {
    EXPECT_TRUE(files_.writeAtomically(tree_.path("a/b/file"), "content"));
    EXPECT_EQ(tree_.read("a/b/file"), "content");
    EXPECT_EQ(modeOf(tree_.at("a")), 0700U);
    EXPECT_EQ(modeOf(tree_.at("a/b")), 0700U);
    EXPECT_EQ(modeOf(tree_.at("a/b/file")), 0600U);
    EXPECT_EQ(namesIn(tree_.at("a/b")), QStringList{u"file"_s});
}

TEST_F(WriteAtomically, AFileForOthersFollowsTheUmask) {
    for (const auto& [mask, mode] : {std::pair<mode_t, mode_t>{0022, 0644}, {0077, 0600}, {0002, 0664}}) {
        const QString path = tree_.path("exported");
        const mode_t before = ::umask(mask);
        std::error_code error;
        EXPECT_TRUE(files_.writeAtomically(path, "content", NewFile::ByUmask, error));
        ::umask(before);
        EXPECT_EQ(modeOf(tree_.at("exported")), mode);
        tree_.remove("exported");
    }
}

TEST_F(WriteAtomically, AnExistingFileForOthersKeepsItsMode) {
    const QString path = tree_.write("file", "old");
    fs::permissions(tree_.at("file"), fs::perms{0600});
    std::error_code error;
    EXPECT_TRUE(files_.writeAtomically(path, "new", NewFile::ByUmask, error));
    EXPECT_EQ(modeOf(tree_.at("file")), 0600U);
}

TEST_F(WriteAtomically, AFileThatIsReplacedKeepsItsMode) {
    const QString path = tree_.write("file", "a longer old content");
    fs::permissions(tree_.at("file"), fs::perms{0644});
    EXPECT_TRUE(files_.writeAtomically(path, "new"));
    EXPECT_EQ(tree_.read("file"), "new");
    EXPECT_EQ(modeOf(tree_.at("file")), 0644U);
}

TEST_F(WriteAtomically, TheOldFileItselfIsNeverTouched) {
    const QString path = tree_.write("file", "old");
    fs::create_hard_link(tree_.at("file"), tree_.at("second name"));
    EXPECT_TRUE(files_.writeAtomically(path, "new"));
    EXPECT_EQ(tree_.read("second name"), "old");
}

TEST_F(WriteAtomically, AReaderSeesOneContentOrTheOtherAndNeverAPart) {
    const QByteArray one(200'000, '1');
    const QByteArray two(100'000, '2');
    const QString path = tree_.write("file", one);
    std::atomic<bool> stop = false;
    std::atomic<int> reads = 0;
    std::atomic<int> parts = 0;
    std::thread reader([&] {
        const PosixFileSystem files;
        while (!stop) {
            const auto content = files.readFile(path, one.size());
            parts += content == one || content == two ? 0 : 1;
            ++reads;
        }
    });
    int writes = 0;
    const auto write = [&] { EXPECT_TRUE(files_.writeAtomically(path, ++writes % 2 == 0 ? one : two)); };
    while (writes < 20) {
        write();
    }
    // On a busy machine the reader may not have read yet.
    EXPECT_TRUE(waitUntil([&] {
        write();
        return reads >= 20;
    })) << "the file is not read beside its writer: "
        << reads << " times";
    stop = true;
    reader.join();
    EXPECT_EQ(parts, 0);
}

TEST_F(WriteAtomically, ALinkStaysALinkAndItsTargetIsReplaced) {
    tree_.write("dotfiles/layout", "old");
    tree_.link("middle", "dotfiles/layout");
    tree_.link("layout", tree_.at("middle"));
    EXPECT_TRUE(files_.writeAtomically(tree_.path("layout"), "new"));
    EXPECT_TRUE(fs::is_symlink(tree_.at("layout")));
    EXPECT_TRUE(fs::is_symlink(tree_.at("middle")));
    EXPECT_EQ(tree_.read("dotfiles/layout"), "new");
    EXPECT_EQ(namesIn(tree_.at()), (QStringList{u"dotfiles"_s, u"layout"_s, u"middle"_s}));
}

TEST_F(WriteAtomically, ADanglingLinkStaysALinkAndItsTargetIsCreated) {
    tree_.link("settings/layout", "../dotfiles/deep/layout");
    EXPECT_TRUE(files_.writeAtomically(tree_.path("settings/layout"), "new"));
    EXPECT_TRUE(fs::is_symlink(tree_.at("settings/layout")));
    EXPECT_EQ(tree_.read("dotfiles/deep/layout"), "new");
}

TEST_F(WriteAtomically, LinkCyclesAreRefused) {
    tree_.link("one", "two");
    tree_.link("two", "one");
    EXPECT_FALSE(files_.writeAtomically(tree_.path("one"), "new"));
    EXPECT_EQ(namesIn(tree_.at()), (QStringList{u"one"_s, u"two"_s}));
}

TEST_F(WriteAtomically, OnlyRegularFilesAreReplaced) {
    tree_.makeFolder("folder");
    ASSERT_EQ(::mkfifo(tree_.at("pipe").c_str(), 0600), 0);
    EXPECT_FALSE(files_.writeAtomically(tree_.path("folder"), "new"));
    EXPECT_FALSE(files_.writeAtomically(tree_.path("pipe"), "new"));
    EXPECT_FALSE(files_.writeAtomically(tree_.path("folder/"), "new"));
    EXPECT_FALSE(files_.writeAtomically(u"relative"_s, "new"));
    EXPECT_EQ(namesIn(tree_.at()), (QStringList{u"folder"_s, u"pipe"_s}));
}

TEST_F(WriteAtomically, AFailureLeavesTheOldContentAndNoTemporaryFile) {
    const QString path = tree_.write("file", "old");
    // Acts like a full disk after one page.
    rlimit before = {};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &before), 0);
    const auto previous = std::signal(SIGXFSZ, SIG_IGN);
    const rlimit full = {.rlim_cur = 4096, .rlim_max = before.rlim_max};
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &full), 0);
    const bool written = files_.writeAtomically(path, QByteArray(100'000, 'x'));
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &before), 0);
    std::signal(SIGXFSZ, previous);
    EXPECT_FALSE(written);
    EXPECT_EQ(tree_.read("file"), "old");
    EXPECT_EQ(namesIn(tree_.at()), QStringList{u"file"_s});
}

TEST_F(WriteAtomically, AFailedFlushToTheDiskIsAFailure) {
    const QString path = tree_.write("file", "old");
    const FailingFlush flush;
    std::error_code error;
    EXPECT_FALSE(files_.writeAtomically(path, "new", NewFile::UserOnly, error));
    EXPECT_EQ(error, std::errc::io_error);
    EXPECT_EQ(tree_.read("file"), "old");
    EXPECT_EQ(namesIn(tree_.at()), QStringList{u"file"_s});
}

TEST_F(WriteAtomically, AReadOnlyFileIsReplacedAndStaysReadOnly) {
    openToAll();
    const QString path = tree_.write("folder/file", "old");
    fs::permissions(tree_.at("folder"), fs::perms{0777});
    fs::permissions(tree_.at("folder/file"), fs::perms{0444});
    const OrdinaryUser user;
    EXPECT_TRUE(files_.writeAtomically(path, "new"));
    EXPECT_EQ(tree_.read("folder/file"), "new");
    EXPECT_EQ(modeOf(tree_.at("folder/file")), 0444U);
}

TEST_F(WriteAtomically, WithoutWritePermissionNothingChanges) {
    openToAll();
    const QString path = tree_.write("locked/file", "old");
    {
        const OrdinaryUser user;
        EXPECT_FALSE(files_.writeAtomically(path, "new"));
        EXPECT_FALSE(files_.writeAtomically(tree_.path("locked/folder/file"), "new"));
        EXPECT_FALSE(files_.writeAtomically(tree_.path("locked/file/below a file"), "new"));
    }
    EXPECT_EQ(tree_.read("locked/file"), "old");
    EXPECT_EQ(namesIn(tree_.at("locked")), QStringList{u"file"_s});
}

TEST_F(WriteAtomically, TheReasonOfAFailureIsReported) {
    openToAll();
    tree_.write("locked/file", "old");
    tree_.makeFolder("folder");
    tree_.link("endless", "endless");
    const auto reason = [&](const QString& path) {
        std::error_code error;
        EXPECT_FALSE(files_.writeAtomically(path, "new", NewFile::UserOnly, error));
        return error;
    };
    EXPECT_EQ(reason(u"/proc/nowhere/file"_s), std::errc::no_such_file_or_directory);
    EXPECT_EQ(reason(tree_.path("folder")), std::errc::is_a_directory);
    EXPECT_EQ(reason(tree_.path("endless")), std::errc::too_many_symbolic_link_levels);
    EXPECT_EQ(reason(tree_.path("locked/file/below a file")), std::errc::not_a_directory);
    EXPECT_EQ(reason(u"/dev/null"_s), std::errc::invalid_argument);
    const OrdinaryUser user;
    EXPECT_EQ(reason(tree_.path("locked/file")), std::errc::permission_denied);
}

TEST_F(WriteAtomically, ASuccessDoesNotSetTheReason) {
    std::error_code error;
    EXPECT_TRUE(files_.writeAtomically(tree_.path("file"), "new", NewFile::UserOnly, error));
    EXPECT_FALSE(error);
}

TEST_F(Remove, AFileIsRemovedAndOfALinkOnlyTheLink) {
    const QString path = tree_.write("file", "x");
    const QString link = tree_.link("link", "file");
    EXPECT_TRUE(files_.remove(link));
    EXPECT_EQ(namesIn(tree_.at()), QStringList{u"file"_s});
    EXPECT_TRUE(files_.remove(path));
    EXPECT_EQ(namesIn(tree_.at()), QStringList());
}

TEST_F(Remove, OtherThanFilesAreNotRemoved) {
    tree_.makeFolder("folder");
    EXPECT_FALSE(files_.remove(tree_.path("folder")));
    EXPECT_FALSE(files_.remove(tree_.path("missing")));
    EXPECT_FALSE(files_.remove(u"relative"_s));
    EXPECT_EQ(namesIn(tree_.at()), QStringList{u"folder"_s});
}

TEST_F(SetAside, TheFileIsRenamedWithinItsFolder) {
    const QString path = tree_.write("layout.json", "broken");
    EXPECT_TRUE(files_.setAside(path));
    EXPECT_EQ(namesIn(tree_.at()), QStringList{u"layout.json.unreadable-1"_s});
    EXPECT_EQ(tree_.read("layout.json.unreadable-1"), "broken");
}

TEST_F(SetAside, EarlierFilesThatWereSetAsideAreKept) {
    for (const char* const content : {"first", "second", "third"}) {
        EXPECT_TRUE(files_.setAside(tree_.write("layout.json", content)));
    }
    EXPECT_EQ(tree_.read("layout.json.unreadable-1"), "first");
    EXPECT_EQ(tree_.read("layout.json.unreadable-2"), "second");
    EXPECT_EQ(tree_.read("layout.json.unreadable-3"), "third");
}

TEST_F(SetAside, ATakenNameIsSkippedEvenIfItIsADanglingLink) {
    tree_.link("layout.json.unreadable-1", "missing");
    EXPECT_TRUE(files_.setAside(tree_.write("layout.json", "broken")));
    EXPECT_TRUE(fs::is_symlink(tree_.at("layout.json.unreadable-1")));
    EXPECT_EQ(tree_.read("layout.json.unreadable-2"), "broken");
}

TEST_F(SetAside, ALinksTargetIsRenamedAndTheNextWriteFollowsTheLink) {
    tree_.write("dotfiles/layout", "broken");
    const QString path = tree_.link("layout", "dotfiles/layout");
    EXPECT_TRUE(files_.setAside(path));
    EXPECT_TRUE(files_.writeAtomically(path, "new"));
    EXPECT_TRUE(fs::is_symlink(tree_.at("layout")));
    EXPECT_EQ(tree_.read("dotfiles/layout.unreadable-1"), "broken");
    EXPECT_EQ(tree_.read("dotfiles/layout"), "new");
}

TEST_F(SetAside, AMissingFileCannotBeSetAside) {
    EXPECT_FALSE(files_.setAside(tree_.path("missing")));
    EXPECT_FALSE(files_.setAside(tree_.path("no/folder")));
    EXPECT_FALSE(files_.setAside(u"relative"_s));
    EXPECT_EQ(namesIn(tree_.at()), QStringList());
}

TEST_F(SetAside, WithoutWritePermissionTheFileIsNotRenamed) {
    openToAll();
    const QString path = tree_.write("locked/file", "old");
    {
        const OrdinaryUser user;
        EXPECT_FALSE(files_.setAside(path));
    }
    EXPECT_EQ(namesIn(tree_.at("locked")), QStringList{u"file"_s});
}

TEST_F(SetAside, OtherThanRegularFilesAreNotRenamed) {
    tree_.makeFolder("Documents");
    ASSERT_EQ(::mkfifo(tree_.at("pipe").c_str(), 0600), 0);
    EXPECT_FALSE(files_.setAside(tree_.path("Documents")));
    EXPECT_FALSE(files_.setAside(tree_.link("layout.json", "Documents")));
    EXPECT_FALSE(files_.setAside(tree_.path("pipe")));
    EXPECT_EQ(namesIn(tree_.at()), QStringList({u"Documents"_s, u"layout.json"_s, u"pipe"_s}));
}

TEST_F(PosixFileSystemTest, TheTypeOfAPathsTargetIsReported) {
    tree_.makeFolder("folder");
    ASSERT_EQ(::mkfifo(tree_.at("pipe").c_str(), 0600), 0);
    EXPECT_EQ(files_.kind(tree_.write("file", "")), FileKind::Regular);
    EXPECT_EQ(files_.kind(tree_.link("to file", "file")), FileKind::Regular);
    EXPECT_EQ(files_.kind(tree_.path("folder")), FileKind::Other);
    EXPECT_EQ(files_.kind(tree_.link("to folder", "folder")), FileKind::Other);
    EXPECT_EQ(files_.kind(tree_.path("pipe")), FileKind::Other);
    EXPECT_EQ(files_.kind(u"/dev/null"_s), FileKind::Other);
    EXPECT_EQ(files_.kind(tree_.path("missing")), FileKind::Missing);
    EXPECT_EQ(files_.kind(tree_.link("to nothing", "missing")), FileKind::Missing);
    EXPECT_EQ(files_.kind(tree_.path("file/below a file")), FileKind::Unknown);
    EXPECT_EQ(files_.kind(tree_.link("endless", "endless")), FileKind::Unknown);
    EXPECT_EQ(files_.kind(u"relative"_s), FileKind::Unknown);
}
