#include "platform/linux/files/RegularFile.h"

#include "platform/linux/files/FolderReader.h"
#include "support/TemporaryTree.h"

#include <fcntl.h>
#include <gtest/gtest.h>

using namespace amberquill;
using namespace amberquill::desktop;

TEST(ReadRegularFile, APathIsRelativeToTheOpenFolder) {
    const TemporaryTree tree;
    tree.write("sub/file", "content");
    const FileDescriptor folder = openFolder(AT_FDCWD, tree.path().toUtf8().constData());
    QByteArray buffer;
    EXPECT_EQ(readRegularFile(folder.get(), "sub/file", 100, buffer), "content");
    EXPECT_EQ(readRegularFile(folder.get(), "file", 100, buffer), std::nullopt);
}

TEST(ReadRegularFile, OneBufferCanReadFilesOfEverySize) {
    const TemporaryTree tree;
    const FileDescriptor folder = openFolder(AT_FDCWD, tree.path().toUtf8().constData());
    QByteArray buffer;
    for (const qsizetype size : {10, 100'000, 4096, 0, 4095, 4097, 8192, 100'001}) {
        const QByteArray content(size, static_cast<char>('a' + size % 26));
        tree.write("file", content);
        const auto read = readRegularFile(folder.get(), "file", 200'000, buffer);
        ASSERT_TRUE(read) << size;
        EXPECT_EQ(*read, content) << size;
    }
    EXPECT_GE(buffer.size(), 100'001);
}
