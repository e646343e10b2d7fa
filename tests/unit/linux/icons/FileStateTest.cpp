#include "platform/linux/applications/icons/FileState.h"

#include "support/IconFiles.h"

#include <gtest/gtest.h>

using namespace amberquill;
using namespace amberquill::desktop;

TEST(FileState, AChangeOfTimeOrSizeIsAnotherState) {
    const TemporaryTree files;
    const auto path = files.write("a", "one");
    setModified(path, 1'000);
    const auto first = fileState(path.toStdString());
    ASSERT_TRUE(first);
    EXPECT_EQ(*first, (FileState{.path = path.toStdString(), .modified = 1'000'000'000'000, .size = 3}));
    EXPECT_EQ(fileState(path.toStdString()), first);
    setModified(path, 1'001);
    EXPECT_NE(fileState(path.toStdString()), first);
    files.write("a", "longer");
    setModified(path, 1'000);
    EXPECT_NE(fileState(path.toStdString()), first);
}

TEST(FileState, OnlyRegularFilesHaveOne) {
    const TemporaryTree files;
    files.write("a", "x");
    EXPECT_TRUE(fileState(files.link("link", "a").toStdString()));
    EXPECT_FALSE(fileState(files.path().toStdString()));
    EXPECT_FALSE(fileState(files.path("missing").toStdString()));
}
