#include "platform/linux/applications/icons/UndecodableFiles.h"

#include "platform/linux/files/RegularFile.h"
#include "support/IconFiles.h"

#include <fcntl.h>
#include <gtest/gtest.h>

using namespace amberquill;
using namespace amberquill::desktop;

namespace {

std::optional<FileState> stateOf(const QString& path) {
    const auto name = path.toStdString();
    return fileState(openForReading(AT_FDCWD, name.c_str()), name);
}

} // namespace

TEST(FileState, AChangeOfTimeOrSizeIsAnotherState) {
    const TemporaryTree files;
    const auto path = files.write("a", "one");
    setModified(path, 1'000);
    const auto first = stateOf(path);
    ASSERT_TRUE(first);
    EXPECT_EQ(*first, (FileState{.path = path.toStdString(), .modified = 1'000'000'000'000, .size = 3}));
    EXPECT_EQ(stateOf(path), first);
    setModified(path, 1'001);
    EXPECT_NE(stateOf(path), first);
    files.write("a", "longer");
    setModified(path, 1'000);
    EXPECT_NE(stateOf(path), first);
}

TEST(FileState, OnlyRegularFilesHaveOne) {
    const TemporaryTree files;
    files.write("a", "x");
    EXPECT_TRUE(stateOf(files.link("link", "a")));
    EXPECT_FALSE(stateOf(files.path()));
    EXPECT_FALSE(stateOf(files.path("missing")));
}
