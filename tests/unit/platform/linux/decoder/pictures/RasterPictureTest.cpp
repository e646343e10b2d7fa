#include "platform/linux/decoder/pictures/RasterPicture.h"
#include "support/IconFiles.h"

#include <QColorSpace>
#include <gtest/gtest.h>
#include <sys/resource.h>

using namespace amberquill;
using namespace amberquill::desktop;

namespace {

constexpr std::array formats{std::pair{"png", IconFormat::Png},   std::pair{"jpeg", IconFormat::Jpeg},
                             std::pair{"webp", IconFormat::Webp}, std::pair{"tiff", IconFormat::Tiff},
                             std::pair{"xpm", IconFormat::Xpm},   std::pair{"ico", IconFormat::Ico}};

// The process's peak memory, in bytes.
std::int64_t peakMemory() {
    rusage usage = {};
    ::getrusage(RUSAGE_SELF, &usage);
    return std::int64_t{usage.ru_maxrss} * 1024;
}

constexpr std::int64_t mebibyte = std::int64_t{1024} * 1024;

constexpr int edge = 48;

// Each pixel has another colour and alpha.
QImage manyColours(int width, int height) {
    QImage image(width, height, QImage::Format_ARGB32);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            image.setPixel(x, y, qRgba(x * 7 % 256, y * 11 % 256, (x + y) * 13 % 256, (x * y) % 256));
        }
    }
    return image;
}

// An ICO file of PNG pictures of these sizes.
QByteArray icoOf(const std::vector<std::pair<int, QByteArray>>& pictures) {
    const auto word = [](qsizetype number) {
        return QByteArray(1, static_cast<char>(number % 256)) + static_cast<char>(number / 256);
    };
    QByteArray bytes = QByteArray("\0\0\1\0", 4) + word(static_cast<qsizetype>(pictures.size()));
    QByteArray data;
    const auto start = bytes.size() + 16 * static_cast<qsizetype>(pictures.size());
    for (const auto& [size, picture] : pictures) {
        const auto at = start + data.size();
        bytes += QByteArray(2, static_cast<char>(size)) + QByteArray("\0\0\1\0\x20\0", 6) +
                 word(picture.size()) + word(0) + word(at % 65'536) + word(at / 65'536);
        data += picture;
    }
    return bytes + data;
}

// A TIFF file of white pictures of these sizes, a byte a pixel.
QByteArray greyTiff(const std::vector<quint32>& edges) {
    const auto littleEndian = [](quint32 number, int size) {
        QByteArray bytes(4, '\0');
        qToLittleEndian(number, bytes.data());
        return bytes.first(size);
    };
    QByteArray bytes("II*\0", 4);
    for (const auto size : edges) { // the offset of the picture's entries, then its pixels and the entries
        const auto pixels = static_cast<quint32>(bytes.size()) + 4;
        bytes +=
            littleEndian(pixels + size * size, 4) + QByteArray(static_cast<qsizetype>(size) * size, '\xFF');
        const std::vector<std::pair<quint32, quint32>> entries{{256, size}, {257, size}, {258, 8},
                                                               {259, 1},    {262, 1},    {273, pixels},
                                                               {277, 1},    {278, size}, {279, size * size}};
        bytes += littleEndian(static_cast<quint32>(entries.size()), 2);
        for (const auto& [tag, value] : entries) {
            bytes += littleEndian(tag, 2) + littleEndian(4, 2) + littleEndian(1, 4) + littleEndian(value, 4);
        }
    }
    return bytes + QByteArray(4, '\0');
}

} // namespace

TEST(RasterPicture, EveryFormatIsRead) {
    for (const auto& [name, format] : formats) {
        const auto image =
            decodedRaster(encoded(filledImage(20, 30, QColor(200, 30, 40)), name), format, edge);
        ASSERT_EQ(image.size(), QSize(20, 30)) << name;
        const auto pixel = image.pixelColor(10, 15);
        EXPECT_NEAR(pixel.red(), 200, 4) << name;
        EXPECT_NEAR(pixel.green(), 30, 4) << name;
        EXPECT_NEAR(pixel.blue(), 40, 4) << name;
    }
}

TEST(RasterPicture, ATruncatedFileIsNullOrHasItsSize) {
    for (const auto& [name, format] : formats) {
        const auto whole = encoded(filledImage(20, 30, Qt::red), name);
        for (qsizetype size = 0; size < whole.size(); size += 1 + size / 40) {
            const auto image = decodedRaster(whole.first(size), format, edge);
            EXPECT_TRUE(image.isNull() || image.size() == QSize(20, 30)) << name << ' ' << size;
        }
    }
}

TEST(RasterPicture, AFileWithAnyByteChangedIsHandled) {
    for (const auto& [name, format] : formats) {
        const auto whole = encoded(filledImage(20, 30, Qt::red), name);
        for (qsizetype at = 0; at < whole.size(); at += 1 + at / 60) {
            auto broken = whole;
            broken[at] = static_cast<char>(~broken[at]);
            const auto image = decodedRaster(broken, format, edge);
            EXPECT_LE(qint64{image.width()} * image.height(), 32 * mebibyte) << name << ' ' << at;
        }
    }
}

TEST(RasterPicture, ATooLargeHeaderIsRefusedBeforeAllocation) {
    const auto before = peakMemory();
    EXPECT_TRUE(decodedRaster(pngThatClaims(30'000, 30'000), IconFormat::Png, edge).isNull());
    EXPECT_TRUE(decodedRaster(pngThatClaims(2'000'000'000, 1), IconFormat::Png, edge).isNull());
    EXPECT_TRUE(decodedRaster(pngThatClaims(6'000, 6'000), IconFormat::Png, edge).isNull());
    EXPECT_TRUE(decodedRaster(pngThatClaims(0, 0), IconFormat::Png, edge).isNull());
    EXPECT_TRUE(
        decodedRaster("/* XPM */\nstatic char *a[]={\n\"30000 30000 2 1\",", IconFormat::Xpm, edge).isNull());
    EXPECT_TRUE(decodedRaster("/* XPM */\nstatic char *a[]={\n\"4 4 2000000000 1\",", IconFormat::Xpm, edge)
                    .isNull());
    EXPECT_LT(peakMemory() - before, 64 * mebibyte);
}

TEST(RasterPicture, TheLargestPictureMayHaveSixteenBitsAColour) {
    QImage deep(5'792, 5'792, QImage::Format_RGBA64);
    deep.fill(Qt::red);
    EXPECT_EQ(decodedRaster(encoded(deep, "png"), IconFormat::Png, edge).size(), deep.size());
}

TEST(RasterPicture, MissingPixelsAreRefused) {
    EXPECT_TRUE(decodedRaster(pngThatClaims(500, 500), IconFormat::Png, edge).isNull());
    EXPECT_TRUE(decodedRaster(pngThatClaims(500, 500, pngChunk("IEND", "")), IconFormat::Png, edge).isNull());
    EXPECT_TRUE(
        decodedRaster(pngThatClaims(500, 500, pngChunk("IDAT", "garbage")), IconFormat::Png, edge).isNull());
}

TEST(RasterPicture, OnlyTheRequestedFormatIsRead) {
    EXPECT_TRUE(decodedRaster(png(4, 4), IconFormat::Jpeg, edge).isNull());
    EXPECT_TRUE(decodedRaster(redSquare, IconFormat::Svg, edge).isNull());
    EXPECT_TRUE(decodedRaster(redSquare, IconFormat::Png, edge).isNull());
}

TEST(RasterPicture, AHeaderStatesTheSize) {
    EXPECT_EQ(rasterSize(pngThatClaims(30'000, 20'000, pngChunk("IDAT", "")), IconFormat::Png),
              QSize(30'000, 20'000));
    EXPECT_EQ(rasterSize(encoded(filledImage(20, 30, Qt::red), "jpeg"), IconFormat::Jpeg), QSize(20, 30));
    EXPECT_TRUE(rasterSize(redSquare, IconFormat::Png).isEmpty());
    EXPECT_TRUE(rasterSize(redSquare, IconFormat::Svg).isEmpty());
    EXPECT_TRUE(rasterSize(png(4, 4).first(12), IconFormat::Png).isEmpty());
    EXPECT_TRUE(rasterSize("", IconFormat::Png).isEmpty());
}

TEST(RasterPicture, EveryPixelOfAPngIsExact) {
    const auto image = manyColours(37, 21);
    EXPECT_EQ(decodedRaster(encoded(image, "png"), IconFormat::Png, edge), image);
}

TEST(RasterPicture, EveryKindOfPngIsRead) {
    const auto colours = manyColours(20, 20);
    for (const auto format : {QImage::Format_RGB32, QImage::Format_Grayscale8, QImage::Format_Indexed8,
                              QImage::Format_Mono, QImage::Format_RGBA64, QImage::Format_Grayscale16}) {
        const auto image = colours.convertToFormat(format);
        const auto decoded = decodedRaster(encoded(image, "png"), IconFormat::Png, edge);
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

TEST(RasterPicture, AColourProfileIsKept) {
    auto image = manyColours(4, 4);
    image.setColorSpace(QColorSpace(QColorSpace::DisplayP3));
    EXPECT_EQ(decodedRaster(encoded(image, "png"), IconFormat::Png, edge).colorSpace().primaries(),
              QColorSpace::Primaries::DciP3D65);
}

TEST(RasterPicture, ABrokenProfileIsIgnored) {
    const auto header = pngThatClaims(1, 1);
    for (const auto& profile :
         {QByteArray(), QByteArray("name"), QByteArray("name\0", 5), QByteArray("name\0\0", 6),
          QByteArray("name\0\0garbage", 13),
          QByteArray("name\0\0", 6) + qCompress(QByteArray(3'000'000, 'x')).sliced(4)}) {
        const auto pixel = qCompress(QByteArray("\0\1\2\3\xFF", 5)).sliced(4);
        const auto image =
            decodedRaster(header + pngChunk("iCCP", profile) + pngChunk("IDAT", pixel) + pngChunk("IEND", ""),
                          IconFormat::Png, edge);
        ASSERT_EQ(image.size(), QSize(1, 1));
        EXPECT_EQ(image.pixel(0, 0), qRgba(1, 2, 3, 255));
        EXPECT_FALSE(image.colorSpace().isValid());
    }
}

TEST(RasterPicture, ATruncatedPngIsNull) {
    const auto whole = encoded(manyColours(30, 30), "png");
    const auto end = whole.indexOf("IEND") - 4;
    for (qsizetype size = 0; size < end; ++size) {
        EXPECT_TRUE(decodedRaster(whole.first(size), IconFormat::Png, edge).isNull()) << size;
    }
}

TEST(RasterPicture, OfSeveralSizesInAnIcoFileTheBestIsTaken) {
    const auto bytes =
        icoOf({{16, png(16, 16, Qt::red)}, {0, png(256, 256, Qt::blue)}, {64, png(64, 64, Qt::green)}});
    EXPECT_EQ(decodedRaster(bytes, IconFormat::Ico, 16).size(), QSize(16, 16));
    EXPECT_EQ(decodedRaster(bytes, IconFormat::Ico, 48).size(), QSize(64, 64));
    EXPECT_EQ(decodedRaster(bytes, IconFormat::Ico, 120).size(), QSize(256, 256));
    EXPECT_EQ(decodedRaster(bytes, IconFormat::Ico, 500).size(), QSize(256, 256));
}

TEST(RasterPicture, OfTheSameSizeInAnIcoFileTheOneOfMoreColoursIsTaken) {
    const auto single = [](const QImage& image) {
        constexpr qsizetype listBytes = 22;
        return encoded(image, "ico").sliced(listBytes);
    };
    const auto grey = single(filledImage(32, 32, Qt::gray).convertToFormat(QImage::Format_Mono));
    const auto colours = single(filledImage(32, 32, Qt::red));
    auto bytes = icoOf({{32, grey}, {32, colours}});
    constexpr qsizetype depthOfFirst = 6 + 6;
    bytes[depthOfFirst] = 1;
    EXPECT_EQ(decodedRaster(bytes, IconFormat::Ico, edge).pixel(5, 5), red);
}

TEST(RasterPicture, OfSeveralSizesInATiffFileTheBestIsTaken) {
    const auto bytes = greyTiff({16, 256, 64});
    EXPECT_EQ(decodedRaster(bytes, IconFormat::Tiff, 16).size(), QSize(16, 16));
    EXPECT_EQ(decodedRaster(bytes, IconFormat::Tiff, 48).size(), QSize(64, 64));
    EXPECT_EQ(decodedRaster(bytes, IconFormat::Tiff, 120).size(), QSize(256, 256));
    EXPECT_EQ(decodedRaster(bytes, IconFormat::Tiff, 500).size(), QSize(256, 256));
}

TEST(RasterPicture, ABrokenSizeInAnIcoFileIsReplacedByTheNextBest) {
    EXPECT_EQ(
        decodedRaster(icoOf({{16, png(16, 16)}, {64, pngThatClaims(64, 64)}}), IconFormat::Ico, 48).size(),
        QSize(16, 16));
    EXPECT_EQ(
        decodedRaster(icoOf({{0, pngThatClaims(30'000, 30'000)}, {16, png(16, 16)}}), IconFormat::Ico, 48)
            .size(),
        QSize(16, 16));
}

namespace {

using Order = std::vector<std::size_t>;

Order best(const std::vector<int>& edges, int edge) {
    std::vector<PictureSize> sizes;
    for (const int one : edges) {
        sizes.push_back({.edge = one});
    }
    return bestPictures(sizes, edge);
}

} // namespace

TEST(PictureChoice, TheExactSizeIsBestThenTheNextLargerThenTheLargest) {
    EXPECT_EQ(best({32, 64, 128}, 64), (Order{1, 2, 0}));
    EXPECT_EQ(best({16, 256, 32, 128}, 100), (Order{3, 1, 2}));
    EXPECT_EQ(best({16, 48, 32}, 100), (Order{1, 2, 0}));
}

TEST(PictureChoice, TheFirstOfEqualPicturesIsBest) {
    EXPECT_EQ(best({48, 48}, 48), (Order{0, 1}));
    EXPECT_EQ(best({48, 48}, 96), (Order{0, 1}));
}

TEST(PictureChoice, AtMostThreeAreTried) {
    EXPECT_EQ(best({1, 2, 3, 4, 5}, 1), (Order{0, 1, 2}));
    EXPECT_EQ(best({}, 1), Order{});
}

TEST(PictureChoice, OfTheSameSizeTheOneOfMoreColoursIsBest) {
    const PictureSize few{.edge = 32, .depth = 4};
    const PictureSize many{.edge = 32, .depth = 32};
    EXPECT_EQ(bestPictures({few, many}, 32), (Order{1, 0}));
    EXPECT_EQ(bestPictures({few, many}, 96), (Order{1, 0}));
    EXPECT_EQ(bestPictures({few, {.edge = 16, .depth = 32}}, 32), (Order{0, 1}));
}
