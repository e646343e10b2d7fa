#include "data/JsonWriter.h"

#include <QString>
#include <gtest/gtest.h>

using namespace amberquill;
using namespace Qt::StringLiterals;

namespace {

QByteArray json(const QString& text) {
    QByteArray result;
    appendJsonString(result, text);
    return result;
}

} // namespace

TEST(JsonString, SlashesQuotesAndBackslashesAreEscaped) {
    EXPECT_EQ(json(u"/a\"b\\c"_s), R"("\/a\"b\\c")");
}

TEST(JsonString, ControlCharactersAreEscapedInTheShortestForm) {
    EXPECT_EQ(json(u"\b\f\n\r\t"_s), R"("\b\f\n\r\t")");
    EXPECT_EQ(json(u"\u0000\u0001\u001f"_s), R"("\u0000\u0001\u001f")");
    EXPECT_EQ(json(u"\u007f"_s), "\"\x7f\"");
}

TEST(JsonString, OtherCharactersAreNotEscaped) {
    EXPECT_EQ(json(u"Ünïcode 日本 🙂"_s), "\"Ünïcode 日本 🙂\"");
}

TEST(JsonString, ALoneSurrogateIsEscaped) {
    EXPECT_EQ(json(QString(QChar(0xD83D))), R"("\ud83d")");
    EXPECT_EQ(json(QString(QChar(0xDE42)) + u"x"_s), R"("\ude42x")");
}
