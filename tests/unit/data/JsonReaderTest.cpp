#include "data/JsonReader.h"

#include "data/JsonWriter.h"

#include <QJsonDocument>
#include <gtest/gtest.h>
#include <random>

using namespace amberquill;
using namespace Qt::StringLiterals;

namespace {

bool isJson(const QByteArray& text) {
    JsonReader reader(text);
    reader.skip();
    return reader.isAtEnd();
}

std::optional<QString> text(const QByteArray& json) {
    JsonReader reader(json);
    QString result = reader.string();
    return reader.isAtEnd() ? std::optional(std::move(result)) : std::nullopt;
}

std::optional<qint64> integer(const QByteArray& json) {
    JsonReader reader(json);
    const auto result = reader.integer();
    EXPECT_TRUE(reader.isAtEnd()) << json.constData();
    return result;
}

QByteArray nested(int depth) {
    return QByteArray(depth, '[') + QByteArray(depth, ']');
}

} // namespace

TEST(JsonReader, ValuesAreReadInOrder) {
    const QByteArray json = " { \"a\" : [ 1 , \"two\" , null ] ,\r\n\t\"b\" : { } , \"c\" : [ ] } ";
    JsonReader reader(json);
    ASSERT_EQ(reader.next(), JsonReader::Kind::Object);
    reader.enterObject();
    EXPECT_EQ(reader.nextKey(), u"a");
    ASSERT_EQ(reader.next(), JsonReader::Kind::Array);
    reader.enterArray();
    ASSERT_TRUE(reader.nextElement());
    EXPECT_EQ(reader.integer(), 1);
    ASSERT_TRUE(reader.nextElement());
    EXPECT_EQ(reader.string(), u"two"_s);
    ASSERT_TRUE(reader.nextElement());
    EXPECT_EQ(reader.next(), JsonReader::Kind::Null);
    reader.skip();
    EXPECT_FALSE(reader.nextElement());
    EXPECT_EQ(reader.nextKey(), u"b");
    reader.enterObject();
    EXPECT_EQ(reader.nextKey(), std::nullopt);
    EXPECT_EQ(reader.nextKey(), u"c");
    reader.enterArray();
    EXPECT_FALSE(reader.nextElement());
    EXPECT_EQ(reader.nextKey(), std::nullopt);
    EXPECT_TRUE(reader.isAtEnd());
}

TEST(JsonReader, TheKindOfEveryValueIsKnown) {
    EXPECT_EQ(JsonReader("{}").next(), JsonReader::Kind::Object);
    EXPECT_EQ(JsonReader("[]").next(), JsonReader::Kind::Array);
    EXPECT_EQ(JsonReader("\"\"").next(), JsonReader::Kind::String);
    EXPECT_EQ(JsonReader("-1").next(), JsonReader::Kind::Number);
    EXPECT_EQ(JsonReader("true").next(), JsonReader::Kind::Boolean);
    EXPECT_EQ(JsonReader("false").next(), JsonReader::Kind::Boolean);
    EXPECT_EQ(JsonReader("null").next(), JsonReader::Kind::Null);
    EXPECT_EQ(JsonReader("").next(), JsonReader::Kind::Nothing);
    EXPECT_EQ(JsonReader("]").next(), JsonReader::Kind::Nothing);
}

TEST(JsonReader, AValueOfAnotherKindIsSkipped) {
    JsonReader reader(R"(["a",7,[1],"b",8])");
    reader.enterArray();
    ASSERT_TRUE(reader.nextElement());
    EXPECT_EQ(reader.stringOrSkip(), u"a"_s);
    ASSERT_TRUE(reader.nextElement());
    EXPECT_EQ(reader.stringOrSkip(), std::nullopt);
    ASSERT_TRUE(reader.nextElement());
    EXPECT_EQ(reader.integerOrSkip(), std::nullopt);
    ASSERT_TRUE(reader.nextElement());
    EXPECT_EQ(reader.integerOrSkip(), std::nullopt);
    ASSERT_TRUE(reader.nextElement());
    EXPECT_EQ(reader.integerOrSkip(), 8);
    EXPECT_FALSE(reader.nextElement());
    EXPECT_TRUE(reader.isAtEnd());
}

TEST(JsonReader, AByteOrderMarkBeforeTheValueIsIgnored) {
    EXPECT_TRUE(isJson("\xEF\xBB\xBF[]"));
    EXPECT_FALSE(isJson("[]\xEF\xBB\xBF"));
}

TEST(JsonReader, EscapesAreDecoded) {
    EXPECT_EQ(text(R"("\"\\\/\b\f\n\r\t\u0041\u00e9\u00C9\ud83d\ude42")"), u"\"\\/\b\f\n\r\tAéÉ🙂"_s);
    EXPECT_EQ(text(R"("\u0000")"), QString(QChar(u'\0')));
    for (const char* bad : {R"("\x")", R"("\u12")", R"("\u12g4")", R"("\u+123")", R"("\)", R"("\")"}) {
        EXPECT_EQ(text(bad), std::nullopt) << bad;
    }
}

TEST(JsonReader, ALoneSurrogateIsKept) {
    EXPECT_EQ(text(R"("\ud83dx")"), QString(QChar(0xD83D)) + u'x');
    EXPECT_EQ(text(R"("\ude42")"), QString(QChar(0xDE42)));
}

TEST(JsonReader, OnlyUtf8InItsShortestFormIsRead) {
    EXPECT_EQ(text("\"Ünï 日本 🙂 \x7f\xEF\xBB\xBF\""), u"Ünï 日本 🙂 \u007f\ufeff"_s);
    for (const char* bad :
         {"\"\xff\"", "\"\x80\"", "\"\xC3\"", "\"\xC3", "\"\xE6\x97\"", "\"\xC0\xAF\"", "\"\xE0\x80\xAF\"",
          "\"\xED\xA0\xBD\"", "\"\xF4\x90\x80\x80\"", "\"\xF8\x88\x80\x80\x80\""}) {
        EXPECT_EQ(text(bad), std::nullopt) << bad;
    }
}

TEST(JsonReader, ControlCharactersMustBeEscaped) {
    EXPECT_EQ(text("\"\n\""), std::nullopt);
    EXPECT_EQ(text(QByteArray("\"\0\"", 3)), std::nullopt);
}

TEST(JsonReader, AnIntegerMayHaveAFractionOfZeroOrAnExponent) {
    EXPECT_EQ(integer("0"), 0);
    EXPECT_EQ(integer("-5"), -5);
    EXPECT_EQ(integer("7.0"), 7);
    EXPECT_EQ(integer("70e-1"), 7);
    EXPECT_EQ(integer("1E+2"), 100);
    EXPECT_EQ(integer("-0"), 0);
    EXPECT_EQ(integer("9223372036854775807"), std::numeric_limits<qint64>::max());
}

TEST(JsonReader, OnlyIntegersOf64BitsAreRead) {
    for (const QByteArray& number :
         {QByteArray("7.5"), QByteArray("1e308"), QByteArray("1e309"), QByteArray("-1e-400"),
          QByteArray("9223372036854775808"), QByteArray("9007199254740994.0"), QByteArray(100'000, '9'),
          "0." + QByteArray(100'000, '0') + "1"}) {
        EXPECT_EQ(integer(number), std::nullopt) << number.left(20).constData();
    }
}

TEST(JsonReader, OnlyTextByTheGrammarIsAccepted) {
    for (const char* good : {"0", "-0.5e-7", "\"\"", "true", "[[],{}]", "{\"\":{}}"}) {
        EXPECT_TRUE(isJson(good)) << good;
    }
    for (const char* bad :
         {"",         " ",          "01",    "+1",    ".5",    "1.",        "1e",
          "1e+",      "-",          "NaN",   "tru",   "truex", "nul",       "[1 2]",
          "[1,]",     "[,1]",       "[",     "]",     "{",     "}",         "{\"a\"}",
          "{\"a\":}", "{\"a\":1,}", "{,}",   "{a:1}", "{1:1}", "{\"a\" 1}", "[}",
          "{]",       "'a'",        "[] []", "1 2",   "\"a",   "// x\n1",   "{\"a\":1 \"b\":2}"}) {
        EXPECT_FALSE(isJson(bad)) << bad;
    }
}

TEST(JsonReader, NestingIsLimited) {
    EXPECT_TRUE(isJson(nested(JsonReader::maximumDepth)));
    EXPECT_FALSE(isJson(nested(JsonReader::maximumDepth + 1)));
    EXPECT_FALSE(isJson(nested(10'000)));
    EXPECT_FALSE(isJson(QByteArray(1'000'000, '[')));
    // Only open containers count.
    QByteArray many = "[";
    for (int i = 0; i < 1000; ++i) {
        many += nested(10) + ',';
    }
    EXPECT_TRUE(isJson(many + "0]"));
}

TEST(JsonReader, AfterAFailureNoValueFollowsAndContainersEnd) {
    JsonReader reader("[1 2]");
    reader.enterArray();
    ASSERT_TRUE(reader.nextElement());
    EXPECT_EQ(reader.integer(), 1);
    EXPECT_FALSE(reader.nextElement());
    EXPECT_TRUE(reader.failed());
    EXPECT_EQ(reader.next(), JsonReader::Kind::Nothing);
    EXPECT_EQ(reader.nextKey(), std::nullopt);
    EXPECT_EQ(reader.string(), QString());
    EXPECT_EQ(reader.integer(), std::nullopt);
    EXPECT_FALSE(reader.isAtEnd());
}

TEST(JsonReader, AByteOrderMarkInAStringIsAnOrdinaryCharacter) {
    EXPECT_EQ(text("\"\xEF\xBB\xBF"
                   "Games\""),
              QChar(0xFEFF) + u"Games"_s);
    EXPECT_EQ(text("\"\xEF\xBF\xBE"
                   "Games\""),
              QChar(0xFFFE) + u"Games"_s);
    EXPECT_EQ(text("\"\\uFEFF\""), QString(QChar(0xFEFF)));
    EXPECT_EQ(text("\"\\ufffeGames\""), QChar(0xFFFE) + u"Games"_s);
}

TEST(JsonReader, AnyTextIsReadBackUnchanged) {
    std::mt19937 random(3);
    for (int round = 0; round < 1000; ++round) {
        QString original;
        for (auto length = random() % 12; length > 0; --length) {
            const bool isAscii = random() % 2 == 0;
            original += QChar(static_cast<char16_t>(isAscii ? random() % 0x80 : random() % 0x10000));
        }
        QByteArray json;
        appendJsonString(json, original);
        EXPECT_EQ(text(json), original);
    }
}

TEST(JsonReader, EveryAcceptedTextIsJsonToQtAsWell) {
    std::mt19937 random(11);
    const QByteArray valid = R"({"a":[1,-2.5e3,"x\u00e9\n",true,null,{"b":[]}],"c":{"d":"é"}})";
    const QByteArray bytes = "{}[]\":,0123-+.eEtrufalsn \\/\xC3\xA9\x01";
    for (int round = 0; round < 20'000; ++round) {
        QByteArray changed = valid;
        for (auto changes = 1 + random() % 2; changes > 0; --changes) {
            const auto at = static_cast<qsizetype>(random() % static_cast<unsigned long>(changed.size()));
            const char byte =
                bytes[static_cast<qsizetype>(random() % static_cast<unsigned long>(bytes.size()))];
            if (random() % 3 == 0) {
                changed.insert(at, byte);
            } else {
                changed[at] = byte;
            }
        }
        if (isJson(changed)) {
            QJsonParseError error;
            QJsonDocument::fromJson(changed, &error);
            EXPECT_EQ(error.error, QJsonParseError::NoError) << changed.constData();
        }
    }
}
