#include "data/NamesCache.h"

#include <gtest/gtest.h>

using namespace amberquill;
using namespace Qt::StringLiterals;

namespace {

const std::vector<AppInfo> apps = {{u"/a.desktop"_s, u"Ä \n tab\t"_s}, {u"/b.app"_s, u""_s}};

} // namespace

TEST(NamesCache, WhatIsWrittenIsReadBack) {
    const auto names = decodeNames(encodeNames(u"de_DE"_s, apps), u"de_DE"_s);
    ASSERT_EQ(names.size(), 2);
    EXPECT_EQ(names.value(u"/a.desktop"_s), apps[0].name);
    EXPECT_TRUE(names.contains(u"/b.app"_s));
}

TEST(NamesCache, AByteOrderMarkIsACharacterOfANameAsAnyOther) {
    const QString name = QChar(0xFEFF) + u"Games"_s;
    EXPECT_EQ(decodeNames(encodeNames(u"de_DE"_s, {{u"/a"_s, name}}), u"de_DE"_s).value(u"/a"_s), name);
}

TEST(NamesCache, NamesInAnotherLanguageAreNotUsed) {
    EXPECT_TRUE(decodeNames(encodeNames(u"de_DE"_s, apps), u"en_US"_s).isEmpty());
}

TEST(NamesCache, AFileCutShortOrTooLongIsNotUsed) {
    const QByteArray content = encodeNames(u"de_DE"_s, apps);
    for (qsizetype length = 0; length < content.size(); ++length) {
        EXPECT_TRUE(decodeNames(content.first(length), u"de_DE"_s).isEmpty()) << length;
    }
    EXPECT_TRUE(decodeNames(content + "x", u"de_DE"_s).isEmpty());
    EXPECT_TRUE(decodeNames(content + QByteArray("x\0y\0", 4), u"de_DE"_s).isEmpty());
}

TEST(NamesCache, AMadeUpCountReservesNothingAndGivesNothing) {
    QByteArray content = encodeNames(u"de_DE"_s, apps);
    content.replace(QByteArray("\0"
                               "2\0",
                               3),
                    QByteArray("\0"
                               "18446744073709551615\0",
                               22));
    EXPECT_TRUE(decodeNames(content, u"de_DE"_s).isEmpty());
}
