#include "platform/linux/decoder/pictures/Inflate.h"

#include "support/IconFiles.h"

#include <gtest/gtest.h>

using namespace amberquill;
using namespace amberquill::desktop;

TEST(Inflate, AFileComesBackAsItWas) {
    const auto file = gzipped(redSquare);
    EXPECT_EQ(inflated(file, Compression::Gzip, 10'000), redSquare);
    EXPECT_EQ(inflated(file, Compression::Gzip, redSquare.size()), redSquare);
    EXPECT_EQ(inflated(file, Compression::Gzip, redSquare.size() - 1), std::nullopt);
}

TEST(Inflate, ABombIsDefused) {
    const auto bomb = gzipped(QByteArray(64 * 1024 * 1024, ' '));
    EXPECT_LT(bomb.size(), 100'000);
    EXPECT_EQ(inflated(bomb, Compression::Gzip, 1024 * 1024), std::nullopt);
}

TEST(Inflate, ABrokenFileIsNone) {
    const auto file = gzipped(redSquare);
    for (qsizetype size = 0; size < file.size(); ++size) {
        EXPECT_EQ(inflated(file.first(size), Compression::Gzip, 10'000), std::nullopt) << size;
    }
    auto wrong = file;
    wrong[wrong.size() - 6] = static_cast<char>(wrong[wrong.size() - 6] + 1); // of the checksum
    EXPECT_EQ(inflated(wrong, Compression::Gzip, 10'000), std::nullopt);
}

TEST(Inflate, TheTwoWrappingsAreToldApart) {
    const auto zlib = qCompress(redSquare).sliced(4);
    EXPECT_EQ(inflated(zlib, Compression::Zlib, 10'000), redSquare);
    EXPECT_EQ(inflated(zlib, Compression::Gzip, 10'000), std::nullopt);
    EXPECT_EQ(inflated(gzipped(redSquare), Compression::Zlib, 10'000), std::nullopt);
}
