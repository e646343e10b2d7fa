#include "platform/linux/decoder/pictures/PngPicture.h"

#include "support/IconFiles.h"

#include <QColorSpace>
#include <gtest/gtest.h>

using namespace amberquill;
using namespace amberquill::desktop;

namespace {

// Every pixel another colour and alpha.
QImage manyColours(int width, int height) {
    QImage image(width, height, QImage::Format_ARGB32);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            image.setPixel(x, y, qRgba(x * 7 % 256, y * 11 % 256, (x + y) * 13 % 256, (x * y) % 256));
        }
    }
    return image;
}

} // namespace

TEST(PngPicture, EveryPixelIsAsItWasWritten) {
    const auto image = manyColours(37, 21);
    EXPECT_EQ(decodedPng(encoded(image, "png")), image);
}

TEST(PngPicture, EveryKindOfPixelIsRead) {
    const auto colours = manyColours(20, 20);
    for (const auto format : {QImage::Format_RGB32, QImage::Format_Grayscale8, QImage::Format_Indexed8,
                              QImage::Format_Mono, QImage::Format_RGBA64, QImage::Format_Grayscale16}) {
        const auto image = colours.convertToFormat(format);
        const auto decoded = decodedPng(encoded(image, "png"));
        ASSERT_EQ(decoded.size(), image.size()) << format;
        const auto expected = image.convertToFormat(QImage::Format_ARGB32);
        int worst = 0;
        for (int y = 0; y < 20; ++y) {
            for (int x = 0; x < 20; ++x) {
                if (qAlpha(expected.pixel(x, y)) == 255) {
                    worst = std::max(worst, std::abs(qRed(decoded.pixel(x, y)) - qRed(expected.pixel(x, y))));
                }
                worst = std::max(worst, std::abs(qAlpha(decoded.pixel(x, y)) - qAlpha(expected.pixel(x, y))));
            }
        }
        EXPECT_LE(worst, 1) << format;
    }
}

TEST(PngPicture, AColourProfileComesWithIt) {
    auto image = manyColours(4, 4);
    EXPECT_FALSE(decodedPng(encoded(image, "png")).colorSpace().isValid());
    image.setColorSpace(QColorSpace(QColorSpace::DisplayP3));
    EXPECT_EQ(decodedPng(encoded(image, "png")).colorSpace().primaries(), QColorSpace::Primaries::DciP3D65);
}

TEST(PngPicture, ABrokenProfileIsNone) {
    const auto header = pngThatClaims(1, 1);
    for (const auto& profile :
         {QByteArray(), QByteArray("name"), QByteArray("name\0", 5), QByteArray("name\0\0", 6),
          QByteArray("name\0\0garbage", 13),
          QByteArray("name\0\0", 6) + qCompress(QByteArray(3'000'000, 'x')).sliced(4)}) {
        const auto pixel = qCompress(QByteArray("\0\1\2\3\xFF", 5)).sliced(4);
        const auto image =
            decodedPng(header + pngChunk("iCCP", profile) + pngChunk("IDAT", pixel) + pngChunk("IEND", ""));
        ASSERT_EQ(image.size(), QSize(1, 1));
        EXPECT_EQ(image.pixel(0, 0), qRgba(1, 2, 3, 255));
        EXPECT_FALSE(image.colorSpace().isValid());
    }
}

TEST(PngPicture, AFileThatEndsAnywhereIsNone) {
    const auto whole = encoded(manyColours(30, 30), "png");
    const auto end = whole.indexOf("IEND") - 4;
    for (qsizetype size = 0; size < end; ++size) {
        EXPECT_TRUE(decodedPng(whole.first(size)).isNull()) << size;
    }
}

TEST(PngPicture, ABrokenFileIsBrokenInSilence) {
    testing::internal::CaptureStderr();
    const auto whole = encoded(manyColours(30, 30), "png");
    for (qsizetype at = 0; at < whole.size(); ++at) {
        auto broken = whole;
        broken[at] = static_cast<char>(~broken[at]);
        if (const auto size = pngSize(broken); size && size->width() < 100 && size->height() < 100) {
            const auto image = decodedPng(broken);
            EXPECT_TRUE(image.isNull() || image.size() == *size) << at;
        }
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(PngPicture, TheHeaderStatesTheSize) {
    EXPECT_EQ(pngSize(pngThatClaims(30'000, 20'000)), QSize(30'000, 20'000));
    EXPECT_EQ(pngSize(pngThatClaims(0, 5)), std::nullopt);
    EXPECT_EQ(pngSize(pngThatClaims(0x80000000U, 5)), std::nullopt);
    EXPECT_EQ(pngSize(png(4, 4).first(20)), std::nullopt);
    EXPECT_EQ(pngSize(redSquare), std::nullopt);
    EXPECT_EQ(pngSize(""), std::nullopt);
}
