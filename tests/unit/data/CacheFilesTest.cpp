#include "data/CacheFiles.h"

#include <gtest/gtest.h>

using namespace amberquill;
using namespace Qt::StringLiterals;

namespace {

QImage square(int edge, QRgb colour) {
    QImage image(edge, edge, QImage::Format_ARGB32_Premultiplied);
    image.fill(colour);
    return image;
}

const std::vector<StoredIcon> icons{{u"/a.desktop"_s, square(3, 0xff102030)},
                                    {u"/Über/b.desktop"_s, square(64, 0x80402010)},
                                    {u"/none.desktop"_s, square(2, 0xff000000), true}};

const std::vector<AppInfo> apps = {{u"/a.desktop"_s, u"Ä \n tab\t"_s}, {u"/b.app"_s, u""_s}};

} // namespace

TEST(IconFile, IconsAreReadBackAsTheyWereWritten) {
    EXPECT_EQ(decodeIcons(encodeIcons(icons)), icons);
    EXPECT_TRUE(decodeIcons(encodeIcons({})).empty());
}

TEST(IconFile, TheImagesOutliveTheContent) {
    QByteArray content = encodeIcons(icons);
    const std::vector<StoredIcon> decoded = decodeIcons(content);
    content.fill('\0');
    content.clear();
    EXPECT_EQ(decoded, icons);
}

TEST(IconFile, OtherPixelFormatsAreConverted) {
    const QImage opaque = square(5, 0xffaabbcc).convertToFormat(QImage::Format_RGB32);
    const auto decoded = decodeIcons(encodeIcons({{u"/a"_s, opaque}}));
    ASSERT_EQ(decoded.size(), 1U);
    EXPECT_EQ(decoded[0].image.format(), QImage::Format_ARGB32_Premultiplied);
    EXPECT_EQ(decoded[0].image.pixel(2, 2), 0xffaabbcc);
}

TEST(IconFile, IconsThatAreNotSquareOrHaveNoPathAreLeftOut) {
    const QImage oblong(3, 4, QImage::Format_ARGB32_Premultiplied);
    EXPECT_TRUE(decodeIcons(encodeIcons({{u"/a"_s, oblong}, {u"/b"_s, {}}, {{}, square(3, 0)}})).empty());
}

TEST(IconFile, ATruncatedFileHasNoIcons) {
    const QByteArray content = encodeIcons({{u"/a"_s, square(3, 0xff102030)}});
    const QByteArray heading = encodeIcons({});
    for (qsizetype size = 0; size < content.size(); ++size) {
        EXPECT_TRUE(decodeIcons(content.first(size)).empty()) << size;
    }
    EXPECT_FALSE(decodeIcons(content).empty());
    EXPECT_TRUE(decodeIcons(content + 'x').empty());
}

TEST(IconFile, WrongSizesAndKindsAreRefused) {
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

TEST(NameFile, NamesAreReadBackAsTheyWereWritten) {
    const auto names = decodeNames(encodeNames(u"de_DE"_s, apps), u"de_DE"_s);
    ASSERT_EQ(names.size(), 2);
    EXPECT_EQ(names.value(u"/a.desktop"_s), apps[0].name);
    EXPECT_TRUE(names.contains(u"/b.app"_s));
}

TEST(NameFile, AByteOrderMarkIsAnOrdinaryCharacterOfAName) {
    const QString name = QChar(0xFEFF) + u"Games"_s;
    EXPECT_EQ(decodeNames(encodeNames(u"de_DE"_s, {{u"/a"_s, name}}), u"de_DE"_s).value(u"/a"_s), name);
}

TEST(NameFile, NamesInAnotherLanguageAreNotUsed) {
    EXPECT_TRUE(decodeNames(encodeNames(u"de_DE"_s, apps), u"en_US"_s).isEmpty());
}

TEST(NameFile, ATruncatedOrExtendedFileIsNotUsed) {
    const QByteArray content = encodeNames(u"de_DE"_s, apps);
    for (qsizetype length = 0; length < content.size(); ++length) {
        EXPECT_TRUE(decodeNames(content.first(length), u"de_DE"_s).isEmpty()) << length;
    }
    EXPECT_TRUE(decodeNames(content + "x", u"de_DE"_s).isEmpty());
    EXPECT_TRUE(decodeNames(content + QByteArray("x\0y\0", 4), u"de_DE"_s).isEmpty());
}

TEST(NameFile, AWrongCountReservesNoMemoryAndGivesNoNames) {
    QByteArray content = encodeNames(u"de_DE"_s, apps);
    content.replace(QByteArray("\0"
                               "2\0",
                               3),
                    QByteArray("\0"
                               "18446744073709551615\0",
                               22));
    EXPECT_TRUE(decodeNames(content, u"de_DE"_s).isEmpty());
}
