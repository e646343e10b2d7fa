#include "platform/linux/applications/entries/ProgramLookup.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace amberquill::desktop;
using namespace Qt::StringLiterals;

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
