#include "data/KeptIcons.h"

#include <gtest/gtest.h>

using namespace amberquill;
using namespace Qt::StringLiterals;

namespace {

QImage filled(int edge, QRgb colour) {
    QImage image(edge, edge, QImage::Format_ARGB32_Premultiplied);
    image.fill(colour);
    return image;
}

const std::vector<KeptIcon> icons{{u"/a.desktop"_s, filled(3, 0xff102030)},
                                  {u"/Über/b.desktop"_s, filled(64, 0x80402010)},
                                  {u"/none.desktop"_s, filled(2, 0xff000000), true}};

} // namespace

TEST(KeptIcons, WhatWasKeptIsFoundAgain) {
    EXPECT_EQ(decodeIcons(encodeIcons(icons)), icons);
    EXPECT_TRUE(decodeIcons(encodeIcons({})).empty());
}

TEST(KeptIcons, TheImagesOutliveTheFilesContent) {
    QByteArray content = encodeIcons(icons);
    const std::vector<KeptIcon> decoded = decodeIcons(content);
    content.fill('\0');
    content.clear();
    EXPECT_EQ(decoded, icons);
}

TEST(KeptIcons, OtherFormatsOfPixelsAreConverted) {
    const QImage opaque = filled(5, 0xffaabbcc).convertToFormat(QImage::Format_RGB32);
    const auto decoded = decodeIcons(encodeIcons({{u"/a"_s, opaque}}));
    ASSERT_EQ(decoded.size(), 1U);
    EXPECT_EQ(decoded[0].image.format(), QImage::Format_ARGB32_Premultiplied);
    EXPECT_EQ(decoded[0].image.pixel(2, 2), 0xffaabbcc);
}

TEST(KeptIcons, WhatIsNoIconIsLeftOut) {
    const QImage oblong(3, 4, QImage::Format_ARGB32_Premultiplied);
    EXPECT_TRUE(decodeIcons(encodeIcons({{u"/a"_s, oblong}, {u"/b"_s, {}}, {{}, filled(3, 0)}})).empty());
}

TEST(KeptIcons, AFileThatEndsTooSoonHoldsNothing) {
    const QByteArray content = encodeIcons({{u"/a"_s, filled(3, 0xff102030)}});
    const QByteArray heading = encodeIcons({});
    for (qsizetype size = 0; size < content.size(); ++size) {
        EXPECT_TRUE(decodeIcons(content.first(size)).empty()) << size;
    }
    EXPECT_FALSE(decodeIcons(content).empty());
    EXPECT_TRUE(decodeIcons(content + 'x').empty());
}

TEST(KeptIcons, MadeUpSizesAreRefused) {
    const QByteArray heading = encodeIcons({});
    const auto withNumbers = [&](quint32 edge, quint32 length, quint32 kind = 1) {
        QByteArray content = heading;
        content.append(reinterpret_cast<const char*>(&edge), 4);
        content.append(reinterpret_cast<const char*>(&kind), 4);
        content.append(reinterpret_cast<const char*>(&length), 4);
        return content + QByteArray(4096, '/');
    };
    for (const quint32 number : {0U, 2'000U, 0x7fff'ffffU, 0xffff'ffffU}) {
        EXPECT_TRUE(decodeIcons(withNumbers(number, 4)).empty()) << number;
        EXPECT_TRUE(decodeIcons(withNumbers(4, number == 2'000U ? 5'000U : number)).empty()) << number;
    }
    // A path of 4,092 bytes and a picture of one pixel fill the content.
    ASSERT_EQ(decodeIcons(withNumbers(1, 4092)).size(), 1U);
    EXPECT_TRUE(decodeIcons(withNumbers(1, 4092, 0)).empty());
    EXPECT_TRUE(decodeIcons(withNumbers(1, 4092, 3)).empty());
    EXPECT_TRUE(decodeIcons("some other file").empty());
}
