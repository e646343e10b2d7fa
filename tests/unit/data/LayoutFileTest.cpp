#include "data/LayoutFile.h"

#include "data/LayoutCoding.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <gtest/gtest.h>
#include <random>

using namespace amberquill;
using namespace Qt::StringLiterals;
using namespace std::chrono;

namespace {

const QUuid gamesId = QUuid::fromString(u"3F2504E0-4F89-11D3-9A0C-0305E82C3301"_s);

LayoutFile example() {
    return {
        LayoutFile::ownFormat,
        LayoutFile::ownVersion,
        sys_days(2026y / 11 / 15) + 3h + 24min + 7s,
        7,
        5,
        {LaunchItem::app(u"/Applications/Calculator.app"_s),
         LaunchItem::folder({gamesId,
                             u"Games"_s,
                             {u"~/Applications/Notes Viewer.app"_s, u"/System/Applications/Chess.app"_s}})}};
}

const QByteArray exampleText = R"({
  "columns" : 7,
  "exportedAt" : "2026-11-15T03:24:07Z",
  "format" : "amberquill-layout",
  "items" : [
    {
      "app" : {
        "_0" : "\/Applications\/Calculator.app"
      }
    },
    {
      "folder" : {
        "_0" : {
          "apps" : [
            "~\/Applications\/Notes Viewer.app",
            "\/System\/Applications\/Chess.app"
          ],
          "id" : "3F2504E0-4F89-11D3-9A0C-0305E82C3301",
          "name" : "Games"
        }
      }
    }
  ],
  "rows" : 5,
  "version" : 1
})";

// The example with one part replaced.
std::optional<LayoutFile> decodedWith(const QByteArray& from, const QByteArray& to) {
    EXPECT_TRUE(exampleText.contains(from)) << from.constData();
    return decodeLayoutFile(QByteArray(exampleText).replace(from, to));
}

QString randomText(std::mt19937& random) {
    static const QStringList parts = {u"a"_s,      u"/"_s,        u"\""_s,     u"\\"_s,     u"é"_s,
                                      u"日本"_s,   u"🙂"_s,     u" "_s,      u"\n"_s,     u"~"_s,
                                      u"\u0000"_s, u"\u001f"_s,   u"\u2028"_s, u":"_s,      u","_s,
                                      u"}"_s,      QChar(0xD83D), u"\u007f"_s, u"\uFEFF"_s, QChar(0xFFFE)};
    QString text;
    for (auto length = random() % 10; length > 0; --length) {
        text += parts[static_cast<qsizetype>(random() % static_cast<unsigned long>(parts.size()))];
    }
    return text;
}

QUuid randomUuid(std::mt19937& random) {
    QByteArray bytes;
    for (int i = 0; i < 16; ++i) {
        bytes += static_cast<char>(random() & 0xFFU);
    }
    return QUuid::fromRfc4122(bytes);
}

LaunchItems randomItems(std::mt19937& random) {
    LaunchItems items;
    for (auto count = random() % 12; count > 0; --count) {
        if (random() % 3 > 0) {
            items.push_back(LaunchItem::app(randomText(random)));
            continue;
        }
        Folder folder{randomUuid(random), randomText(random), {}};
        for (auto apps = random() % 4; apps > 0; --apps) {
            folder.apps.append(randomText(random));
        }
        items.push_back(LaunchItem::folder(folder));
    }
    return items;
}

} // namespace

TEST(LayoutFile, IsWrittenIndentedWithSortedKeysAndEscapedSlashes) {
    EXPECT_EQ(encodeLayoutFile(example()), exampleText);
}

TEST(LayoutFile, EmptyListsAreWrittenAsEmptyArrays) {
    const LayoutFile file{
        .exportedAt = {}, .columns = 3, .rows = 2, .items = {LaunchItem::folder({gamesId, {}, {}})}};
    EXPECT_EQ(encodeLayoutFile(file), R"({
  "columns" : 3,
  "exportedAt" : "1970-01-01T00:00:00Z",
  "format" : "amberquill-layout",
  "items" : [
    {
      "folder" : {
        "_0" : {
          "apps" : [],
          "id" : "3F2504E0-4F89-11D3-9A0C-0305E82C3301",
          "name" : ""
        }
      }
    }
  ],
  "rows" : 2,
  "version" : 1
})");
    EXPECT_EQ(decodeLayoutFile(encodeLayoutFile(file)), file);
}

TEST(LayoutFile, OnlyControlCharactersAreEscaped) {
    const LayoutFile file{.exportedAt = {},
                          .items = {LaunchItem::app(u"Écran 日本 🙂 “x” \u0001\n\u007f"_s)}};
    EXPECT_TRUE(encodeLayoutFile(file).contains("\"Écran 日本 🙂 “x” \\u0001\\n\x7f\""));
}

TEST(LayoutFile, IsReadWithAnyWhiteSpaceAndEscapes) {
    EXPECT_EQ(decodeLayoutFile(exampleText), example());
    EXPECT_EQ(decodeLayoutFile(QJsonDocument::fromJson(exampleText).toJson(QJsonDocument::Compact)),
              example());
    EXPECT_EQ(decodeLayoutFile(QJsonDocument::fromJson(exampleText).toJson(QJsonDocument::Indented)),
              example());
    EXPECT_EQ(decodeLayoutFile("\xEF\xBB\xBF\r\n\t" + QByteArray(exampleText).replace("\n", "\r\n") + " \n"),
              example());
    EXPECT_EQ(decodedWith("\\/", "/"), example());
    EXPECT_EQ(decodedWith("\"columns\"", "\"\\u0063olumns\""), example());
}

TEST(LayoutFile, UnknownKeysAreIgnored) {
    EXPECT_EQ(decodedWith("\"rows\"", "\"comment\" : [{\"rows\" : \"x\"}, null], \"rows\""), example());
    EXPECT_EQ(decodedWith("\"name\"", "\"colour\" : true, \"name\""), example());
}

TEST(LayoutFile, TheSecondOfTwoEqualKeysCounts) {
    EXPECT_EQ(decodedWith("\"columns\" : 7", "\"columns\" : \"x\", \"columns\" : 7"), example());
    EXPECT_EQ(decodedWith("\"columns\" : 7", "\"columns\" : 7, \"columns\" : \"x\""), std::nullopt);
}

TEST(LayoutFile, EachKeyIsRequired) {
    for (const char* key : {"columns", "exportedAt", "format", "items", "rows", "version"}) {
        const QByteArray quoted = QByteArray("\"") + key + "\"";
        EXPECT_EQ(decodedWith(quoted, "\"other\""), std::nullopt) << key;
    }
}

TEST(LayoutFile, AWrongTypeIsRefused) {
    const std::vector<std::pair<QByteArray, QByteArray>> values = {
        {"7", "\"columns\" : "}, {"\"2026-11-15T03:24:07Z\"", "\"exportedAt\" : "},
        {"5", "\"rows\" : "},    {"\"amberquill-layout\"", "\"format\" : "},
        {"1", "\"version\" : "},
    };
    for (const auto& [value, key] : values) {
        for (const QByteArray& other :
             {QByteArray("null"), QByteArray("true"), QByteArray("[]"), QByteArray("{}"),
              QByteArray(value.startsWith('"') ? "7" : "\"7\"")}) {
            EXPECT_EQ(decodedWith(key + value, key + other), std::nullopt)
                << key.constData() << other.constData();
        }
    }
    for (const char* items : {"null", "7", "{}", "\"x\"", "[null]", "[[]]", "[\"x\"]"}) {
        QByteArray text = exampleText;
        const qsizetype start = text.indexOf("[\n    {");
        const qsizetype end = text.lastIndexOf(']') + 1;
        EXPECT_EQ(decodeLayoutFile(text.replace(start, end - start, items)), std::nullopt) << items;
    }
    EXPECT_EQ(decodedWith("\"Games\"", "7"), std::nullopt);
    EXPECT_EQ(decodedWith("\"\\/System\\/Applications\\/Chess.app\"", "7"), std::nullopt);
    for (const char* root : {"[]", "null", "7", "\"x\"", "{}"}) {
        EXPECT_EQ(decodeLayoutFile(root), std::nullopt) << root;
    }
}

TEST(LayoutFile, ANumberThatIsNoIntegerIsRefused) {
    for (const char* number : {"7.5", "1e308", "-1e308", "1e999", "9223372036854775808", "0.1"}) {
        EXPECT_EQ(decodedWith("\"columns\" : 7", QByteArray("\"columns\" : ") + number), std::nullopt)
            << number;
        EXPECT_EQ(decodedWith("\"rows\" : 5", QByteArray("\"rows\" : ") + number), std::nullopt) << number;
        EXPECT_EQ(decodedWith("\"version\" : 1", QByteArray("\"version\" : ") + number), std::nullopt)
            << number;
    }
    EXPECT_EQ(decodedWith("\"columns\" : 7", "\"columns\" : -5")->columns, -5);
    EXPECT_EQ(decodedWith("\"columns\" : 7", "\"columns\" : 7.0"), example());
    EXPECT_EQ(decodedWith("\"version\" : 1", "\"version\" : 99")->version, 99);
}

TEST(LayoutFile, AnInvalidDateIsRefused) {
    for (const char* date :
         {"2026-11-15T03:24:07.5Z", "2026-02-30T00:00:00Z", "2026-11-15T03:24:07", "yesterday"}) {
        EXPECT_EQ(decodedWith("2026-11-15T03:24:07Z", date), std::nullopt) << date;
    }
    EXPECT_EQ(decodedWith("2026-11-15T03:24:07Z", "2026-11-15T04:24:07+01:00"), example());
}

TEST(LayoutFile, AnInvalidItemIsRefused) {
    EXPECT_EQ(decodedWith("\"folder\" : {", "\"app\" : {\"_0\" : \"x\"}, \"folder\" : {"), std::nullopt);
    EXPECT_EQ(decodedWith("\"folder\"", "\"group\""), std::nullopt);
    EXPECT_EQ(decodedWith("\"_0\"", "\"_1\""), std::nullopt);
    EXPECT_EQ(decodedWith("3F2504E0-4F89-11D3-9A0C-0305E82C3301", "3F2504E0"), std::nullopt);
    EXPECT_EQ(decodedWith("3F2504E0-4F89-11D3-9A0C-0305E82C3301", "3F2504E0-4F89-11D3-9A0C-0305E82C330x"),
              std::nullopt);
    EXPECT_EQ(decodedWith("3F2504E0-4F89-11D3-9A0C-0305E82C3301", "3f2504e0-4f89-11d3-9a0c-0305e82c3301"),
              example())
        << "letter case of a UUID is ignored";
}

TEST(LayoutFile, ATruncatedTextIsRefused) {
    for (qsizetype length = 0; length < exampleText.size(); ++length) {
        EXPECT_EQ(decodeLayoutFile(exampleText.first(length)), std::nullopt) << length;
    }
}

TEST(LayoutFile, TextAfterTheObjectIsRefused) {
    EXPECT_EQ(decodeLayoutFile(exampleText + "x"), std::nullopt);
    EXPECT_EQ(decodeLayoutFile(exampleText + exampleText), std::nullopt);
}

TEST(LayoutFile, InvalidUtf8IsRefused) {
    EXPECT_EQ(decodedWith("Games", "Ga\xffmes"), std::nullopt);
    EXPECT_EQ(decodedWith("Games", "Ga\xED\xA0\xBDmes"), std::nullopt) << "a surrogate";
    EXPECT_EQ(decodedWith("Games", "Ga\xC0\xAFmes"), std::nullopt) << "not the shortest form";
}

TEST(LayoutFile, EscapedNulsControlCharactersAndLoneSurrogatesAreRead) {
    const auto file = decodedWith("Games", "a\\u0000b\\u0007\\ud83dc");
    ASSERT_TRUE(file);
    EXPECT_EQ(file->items.back().asFolder()->name, u"a"_s + QChar(0) + u"b\a"_s + QChar(0xD83D) + u'c');
    EXPECT_EQ(decodeLayoutFile(encodeLayoutFile(*file)), file);
    EXPECT_EQ(decodedWith("Games", QByteArray("a\0b", 3)), std::nullopt) << "not escaped";
}

TEST(LayoutFile, DeepNestingIsRefused) {
    const QByteArray deep = QByteArray(10'000, '[') + QByteArray(10'000, ']');
    EXPECT_EQ(decodedWith("\"rows\"", "\"other\" : " + deep + ", \"rows\""), std::nullopt);
    EXPECT_EQ(decodedWith("\"Games\"", deep), std::nullopt);
    EXPECT_EQ(decodeLayoutFile(deep), std::nullopt);
}

TEST(LayoutFile, AHundredMegabytesAreRefused) {
    EXPECT_EQ(decodeLayoutFile(exampleText + QByteArray(100'000'000, ' ')), std::nullopt);
    EXPECT_EQ(decodeLayoutFile(exampleText + QByteArray(1'000'000, ' ')), example());
}

TEST(LayoutFile, AnyLayoutIsReadBackUnchanged) {
    std::mt19937 random(2026);
    for (int round = 0; round < 500; ++round) {
        const LayoutFile file{randomText(random),
                              static_cast<qint64>(random()),
                              sys_seconds(seconds(random())),
                              static_cast<qint64>(random()) - 2'000'000'000,
                              static_cast<qint64>(random()),
                              randomItems(random)};
        EXPECT_EQ(decodeLayoutFile(encodeLayoutFile(file)), file);
        // Qt reads the text as JSON as well.
        QJsonParseError error;
        const QJsonDocument document = QJsonDocument::fromJson(encodeLayoutFile(file), &error);
        EXPECT_EQ(error.error, QJsonParseError::NoError);
        EXPECT_EQ(document.object().keys(), (QStringList{u"columns"_s, u"exportedAt"_s, u"format"_s,
                                                         u"items"_s, u"rows"_s, u"version"_s}));
        EXPECT_EQ(std::get<LaunchItems>(decodeItems(encodeItems(file.items))), file.items)
            << "the private file too";
    }
}
