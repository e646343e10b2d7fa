#include "platform/linux/decoder/pictures/RasterPicture.h"

#include "platform/linux/applications/icons/DecoderMessages.h"
#include "support/IconFiles.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

using namespace amberquill;
using namespace amberquill::desktop;

namespace {

constexpr std::array formats{std::pair{"png", IconFormat::Png},   std::pair{"jpeg", IconFormat::Jpeg},
                             std::pair{"webp", IconFormat::Webp}, std::pair{"tiff", IconFormat::Tiff},
                             std::pair{"xpm", IconFormat::Xpm},   std::pair{"ico", IconFormat::Ico}};

// The most memory that this process has had, in bytes.
std::int64_t peakMemory() {
    rusage usage = {};
    ::getrusage(RUSAGE_SELF, &usage);
    return std::int64_t{usage.ru_maxrss} * 1024;
}

constexpr std::int64_t mebibyte = std::int64_t{1024} * 1024;

// What Qt has to say about broken pictures would bury what the tests say.
class RasterPictureTest : public testing::Test {
protected:
    RasterPictureTest() { quietenDecoders(); }

    QuietDecoding quiet_;
};

} // namespace

TEST_F(RasterPictureTest, EveryFormatIsRead) {
    for (const auto& [name, format] : formats) {
        const auto image = decodedRaster(encoded(filledImage(20, 30, QColor(200, 30, 40)), name), format);
        ASSERT_EQ(image.size(), QSize(20, 30)) << name;
        const auto pixel = image.pixelColor(10, 15);
        EXPECT_NEAR(pixel.red(), 200, 4) << name;
        EXPECT_NEAR(pixel.green(), 30, 4) << name;
        EXPECT_NEAR(pixel.blue(), 40, 4) << name;
    }
}

TEST_F(RasterPictureTest, AFileThatEndsAnywhereIsNoneOrHasItsSize) {
    for (const auto& [name, format] : formats) {
        const auto whole = encoded(filledImage(20, 30, Qt::red), name);
        for (qsizetype size = 0; size < whole.size(); size += 1 + size / 40) {
            const auto image = decodedRaster(whole.first(size), format);
            EXPECT_TRUE(image.isNull() || image.size() == QSize(20, 30)) << name << ' ' << size;
        }
    }
}

TEST_F(RasterPictureTest, AFileWithAnyByteChangedIsSurvived) {
    for (const auto& [name, format] : formats) {
        const auto whole = encoded(filledImage(20, 30, Qt::red), name);
        for (qsizetype at = 0; at < whole.size(); at += 1 + at / 60) {
            auto broken = whole;
            broken[at] = static_cast<char>(~broken[at]);
            const auto image = decodedRaster(broken, format);
            EXPECT_LE(qint64{image.width()} * image.height(), 32 * mebibyte) << name << ' ' << at;
        }
    }
}

TEST_F(RasterPictureTest, AHeaderThatPromisesTooMuchIsRefusedBeforeMemoryIsTaken) {
    const auto before = peakMemory();
    EXPECT_TRUE(decodedRaster(pngThatClaims(30'000, 30'000), IconFormat::Png).isNull());
    EXPECT_TRUE(decodedRaster(pngThatClaims(2'000'000'000, 1), IconFormat::Png).isNull());
    EXPECT_TRUE(decodedRaster(pngThatClaims(6'000, 6'000), IconFormat::Png).isNull());
    EXPECT_TRUE(decodedRaster(pngThatClaims(0, 0), IconFormat::Png).isNull());
    EXPECT_TRUE(
        decodedRaster("/* XPM */\nstatic char *a[]={\n\"30000 30000 2 1\",", IconFormat::Xpm).isNull());
    EXPECT_TRUE(
        decodedRaster("/* XPM */\nstatic char *a[]={\n\"4 4 2000000000 1\",", IconFormat::Xpm).isNull());
    EXPECT_LT(peakMemory() - before, 64 * mebibyte);
}

TEST_F(RasterPictureTest, PixelsThatAreNotThereAreNone) {
    EXPECT_TRUE(decodedRaster(pngThatClaims(500, 500), IconFormat::Png).isNull());
    EXPECT_TRUE(decodedRaster(pngThatClaims(500, 500, pngChunk("IEND", "")), IconFormat::Png).isNull());
    EXPECT_TRUE(
        decodedRaster(pngThatClaims(500, 500, pngChunk("IDAT", "garbage")), IconFormat::Png).isNull());
}

TEST_F(RasterPictureTest, OnlyTheFormatAskedForIsRead) {
    EXPECT_TRUE(decodedRaster(png(4, 4), IconFormat::Jpeg).isNull());
    EXPECT_TRUE(decodedRaster(redSquare, IconFormat::Svg).isNull());
    EXPECT_TRUE(decodedRaster(redSquare, IconFormat::Png).isNull());
}

TEST_F(RasterPictureTest, AHeaderStatesTheSizeOfPngAndJpeg) {
    EXPECT_EQ(embeddedPictureSize(pngThatClaims(30'000, 20'000)), QSize(30'000, 20'000));
    EXPECT_EQ(embeddedPictureSize(encoded(filledImage(20, 30, Qt::red), "jpeg")), QSize(20, 30));
    EXPECT_EQ(embeddedPictureSize(encoded(filledImage(20, 30, Qt::red), "webp")), std::nullopt);
    EXPECT_EQ(embeddedPictureSize(redSquare), std::nullopt);
    EXPECT_EQ(embeddedPictureSize(png(4, 4).first(12)), std::nullopt);
    EXPECT_EQ(embeddedPictureSize(""), std::nullopt);
}
