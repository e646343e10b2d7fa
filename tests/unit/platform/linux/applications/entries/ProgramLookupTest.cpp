#include "platform/linux/applications/entries/ProgramLookup.h"
#include "support/TemporaryTree.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace amberquill;
using namespace amberquill::desktop;
using namespace Qt::StringLiterals;

namespace fs = std::filesystem;

namespace {

class ProgramLookupTest : public testing::Test {
protected:
    void program(const char* path) const {
        tree_.write(path, "#!/bin/sh\n");
        fs::permissions(tree_.at(path), fs::perms{0755});
    }

    [[nodiscard]] bool isInstalled(const QString& name) const {
        return ProgramLookup({tree_.path("bin"), tree_.path("sbin")}).isInstalled(name);
    }

    TemporaryTree tree_;
};

} // namespace

TEST_F(ProgramLookupTest, ANameIsLookedForInEveryFolder) {
    program("bin/first");
    program("sbin/second");
    program("other/third");
    EXPECT_TRUE(isInstalled(u"first"_s));
    EXPECT_TRUE(isInstalled(u"second"_s));
    EXPECT_FALSE(isInstalled(u"third"_s));
}

TEST_F(ProgramLookupTest, AnAbsolutePathNeedsNoFolder) {
    program("other/program");
    EXPECT_TRUE(isInstalled(tree_.path("other/program")));
    EXPECT_FALSE(isInstalled(tree_.path("other/missing")));
}

TEST_F(ProgramLookupTest, ARelativePathIsNotAProgram) {
    program("bin/sub/program");
    EXPECT_FALSE(isInstalled(u"sub/program"_s));
    EXPECT_FALSE(isInstalled(u"./program"_s));
    EXPECT_FALSE(isInstalled(QString()));
}

TEST_F(ProgramLookupTest, ItMustBeAFileThatCanBeExecuted) {
    tree_.write("bin/text", "text");
    fs::permissions(tree_.at("bin/text"), fs::perms{0644});
    tree_.makeFolder("bin/folder");
    tree_.link("bin/dangling", "missing");
    program("other/program");
    tree_.link("bin/link", "../other/program");
    EXPECT_FALSE(isInstalled(u"text"_s));
    EXPECT_FALSE(isInstalled(u"folder"_s));
    EXPECT_FALSE(isInstalled(u"dangling"_s));
    EXPECT_TRUE(isInstalled(u"link"_s));
}

TEST_F(ProgramLookupTest, AFileThatCannotBeExecutedDoesNotHideALaterOne) {
    tree_.write("bin/program", "text");
    program("sbin/program");
    EXPECT_TRUE(isInstalled(u"program"_s));
}

TEST_F(ProgramLookupTest, AnAnswerIsRemembered) {
    program("bin/program");
    ProgramLookup lookup({tree_.path("bin")});
    EXPECT_TRUE(lookup.isInstalled(u"program"_s));
    EXPECT_FALSE(lookup.isInstalled(u"later"_s));
    tree_.remove("bin/program");
    program("bin/later");
    EXPECT_TRUE(lookup.isInstalled(u"program"_s));
    EXPECT_FALSE(lookup.isInstalled(u"later"_s));
}

TEST(ProgramFolders, OnlyAbsolutePartsOfThePathCount) {
    EXPECT_EQ(programFoldersFrom("/usr/bin/::.:bin:/bin:/usr/bin"), (QStringList{u"/usr/bin"_s, u"/bin"_s}));
    EXPECT_EQ(programFoldersFrom(""), (QStringList{u"/usr/local/bin"_s, u"/usr/bin"_s, u"/bin"_s}));
}

namespace {

class ProgramPathTest : public testing::Test {
protected:
    QString make(const QString& name, bool executable = true) {
        const QString path = folder_.filePath(name);
        QDir().mkpath(path.section(u'/', 0, -2));
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.setPermissions(executable ? QFile::ReadOwner | QFile::ExeOwner : QFile::ReadOwner);
        return path;
    }

    QString below(const QString& name) const { return folder_.filePath(name); }

    QTemporaryDir folder_;
};

} // namespace

TEST_F(ProgramPathTest, TheFirstExecutableInTheFoldersWins) {
    make(u"one/tool"_s, false);
    QDir().mkpath(below(u"two/tool"_s));
    const QString third = make(u"three/tool"_s);
    make(u"four/tool"_s);
    EXPECT_EQ(
        findProgram(u"tool"_s,
                    {below(u"none"_s), below(u"one"_s), below(u"two"_s), below(u"three"_s), below(u"four"_s)},
                    u"/"_s),
        third);
    EXPECT_EQ(findProgram(u"tool"_s, {below(u"one"_s)}, u"/"_s), std::nullopt);
}

TEST_F(ProgramPathTest, ANameIsNotLookedForInTheWorkingDirectory) {
    make(u"tool"_s);
    EXPECT_EQ(findProgram(u"tool"_s, {}, folder_.path()), std::nullopt);
}

TEST_F(ProgramPathTest, APathIsTakenAsItIs) {
    const QString tool = make(u"dir/tool"_s);
    EXPECT_EQ(findProgram(tool, {}, u"/"_s), tool);
    EXPECT_EQ(findProgram(tool + u"x"_s, {}, u"/"_s), std::nullopt);
}

TEST_F(ProgramPathTest, ARelativePathIsLookedForInTheWorkingDirectory) {
    const QString tool = make(u"dir/tool"_s);
    EXPECT_EQ(findProgram(u"dir/tool"_s, {below(u"dir"_s)}, folder_.path()), tool);
    EXPECT_EQ(findProgram(u"./tool"_s, {below(u"dir"_s)}, folder_.path()), std::nullopt);
}

TEST_F(ProgramPathTest, AnEmptyNameIsNoProgram) {
    EXPECT_EQ(findProgram({}, {u"/bin"_s}, u"/"_s), std::nullopt);
}

TEST_F(ProgramPathTest, OnlyExecutableRegularFilesCount) {
    EXPECT_FALSE(isExecutableFile(folder_.path()));
    EXPECT_FALSE(isExecutableFile(make(u"text"_s, false)));
    EXPECT_FALSE(isExecutableFile(folder_.filePath(u"gone"_s)));
    EXPECT_FALSE(isExecutableFile(make(u"tool"_s) + QChar(QChar::Null) + u"x"_s));
    EXPECT_TRUE(isExecutableFile(folder_.filePath(u"tool"_s)));
}
