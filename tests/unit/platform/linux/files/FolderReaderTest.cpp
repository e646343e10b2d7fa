#include "platform/linux/files/FolderReader.h"

#include "support/TemporaryTree.h"

#include <fcntl.h>
#include <gtest/gtest.h>

using namespace amberquill;
using namespace amberquill::desktop;

TEST(FolderReader, AMissingEntryTypeIsReadFromTheDiskWithoutFollowingLinks) {
    const TemporaryTree tree;
    tree.write("file", {});
    tree.makeFolder("folder");
    tree.link("link", "folder");
    const FolderReader reader(openFolder(AT_FDCWD, tree.path().toUtf8().constData()));
    ASSERT_TRUE(reader.isOpen());
    EXPECT_EQ(reader.typeOf({.name = "file", .type = DT_UNKNOWN}), DT_REG);
    EXPECT_EQ(reader.typeOf({.name = "folder", .type = DT_UNKNOWN}), DT_DIR);
    EXPECT_EQ(reader.typeOf({.name = "link", .type = DT_UNKNOWN}), DT_LNK);
    EXPECT_EQ(reader.typeOf({.name = "missing", .type = DT_UNKNOWN}), DT_UNKNOWN);
    EXPECT_EQ(reader.typeOf({.name = "file", .type = DT_FIFO}), DT_FIFO)
        << "the listing is taken at its word";
}
