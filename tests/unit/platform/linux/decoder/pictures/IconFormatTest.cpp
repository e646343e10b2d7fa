#include "platform/linux/decoder/pictures/IconFormat.h"

#include "support/IconFiles.h"

#include <gtest/gtest.h>

using namespace amberquill;
using namespace amberquill::desktop;

TEST(IconFormat, TheFirstBytesDecide) {
    EXPECT_EQ(iconFormat(png(4, 4)), IconFormat::Png);
    EXPECT_EQ(iconFormat(encoded(filledImage(4, 4, Qt::red), "jpeg")), IconFormat::Jpeg);
    EXPECT_EQ(iconFormat(encoded(filledImage(4, 4, Qt::red), "webp")), IconFormat::Webp);
    EXPECT_EQ(iconFormat(encoded(filledImage(4, 4, Qt::red), "tiff")), IconFormat::Tiff);
    EXPECT_EQ(iconFormat(encoded(filledImage(4, 4, Qt::red), "xpm")), IconFormat::Xpm);
    EXPECT_EQ(iconFormat(encoded(filledImage(4, 4, Qt::red), "ico")), IconFormat::Ico);
    EXPECT_EQ(iconFormat(icns({})), IconFormat::Icns);
    EXPECT_EQ(iconFormat(gzipped(redSquare)), IconFormat::CompressedSvg);
    EXPECT_EQ(iconFormat(redSquare), IconFormat::Svg);
    EXPECT_EQ(iconFormat(QByteArray("\xFF\xFE<\0s\0", 6)), IconFormat::Svg);
    EXPECT_EQ(iconFormat(QByteArray("\xFE\xFF\0<\0s", 6)), IconFormat::Svg);
    EXPECT_EQ(iconFormat("\xEF\xBB\xBF \r\n\t<?xml?>"), IconFormat::Svg);
}

TEST(IconFormat, AnythingElseIsNone) {
    for (const auto* const bytes : {"", " ", "text", "GIF89a", "RIFF1234WAVE", "RIFF",
                                    ("\x7F"
                                     "ELF"),
                                    "BM"}) {
        EXPECT_EQ(iconFormat(bytes), std::nullopt) << bytes;
    }
}
