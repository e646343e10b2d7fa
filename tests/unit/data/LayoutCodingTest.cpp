#include "data/LayoutCoding.h"

#include <gtest/gtest.h>

using namespace amberquill;
using namespace Qt::StringLiterals;

namespace {

const QUuid chessId = QUuid::fromString(u"3F2504E0-4F89-11D3-9A0C-0305E82C3301"_s);

DecodingError errorOf(const QByteArray& text) {
    const auto decoded = decodeItems(text);
    const auto* error = std::get_if<DecodingError>(&decoded);
    EXPECT_NE(error, nullptr) << text.constData();
    return error != nullptr ? *error : DecodingError{};
}

LaunchItems itemsOf(const QByteArray& text) {
    const auto decoded = decodeItems(text);
    const auto* items = std::get_if<LaunchItems>(&decoded);
    EXPECT_NE(items, nullptr) << text.constData();
    return items != nullptr ? *items : LaunchItems{};
}

const QByteArray folderText = R"({"folder":{"_0":{"id":"3F2504E0-4F89-11D3-9A0C-0305E82C3301",)"
                              R"("name":"Games","apps":["\/Applications\/Chess.app"]}}})";

} // namespace

TEST(LayoutCoding, AnAppIsWrittenUnderItsCaseAndPayloadKey) {
    EXPECT_EQ(encodeItem(LaunchItem::app(u"/Applications/Calculator.app"_s)),
              R"({"app":{"_0":"\/Applications\/Calculator.app"}})");
}

TEST(LayoutCoding, AFolderIsWrittenWithItsKeysInDeclarationOrder) {
    EXPECT_EQ(encodeItem(LaunchItem::folder({chessId, u"Games"_s, {u"/Applications/Chess.app"_s}})),
              folderText);
}

TEST(LayoutCoding, TheListIsCompact) {
    EXPECT_EQ(encodeItems({}), "[]");
    EXPECT_EQ(encodeItems({LaunchItem::app(u"a"_s), LaunchItem::app(u"b"_s)}),
              R"([{"app":{"_0":"a"}},{"app":{"_0":"b"}}])");
}

TEST(LayoutCoding, ItemsAreReadBackUnchanged) {
    const LaunchItems items = {
        LaunchItem::app(u"/Applications/Écran “Ü” \\ \" \n\t\u0001 日本語 🙂.app"_s),
        LaunchItem::folder({chessId, u""_s, {}}),
        LaunchItem::folder({chessId, u"a/b"_s, {u"/x"_s, u"/y"_s}}),
        LaunchItem::app(QString()),
        LaunchItem::app(QString(QChar(0xD83D)) + u"lone surrogate"_s),
        LaunchItem::app(u"null \0 inside"_s),
    };
    EXPECT_EQ(itemsOf(encodeItems(items)), items);
}

TEST(LayoutCoding, AnItemWithBothCasesIsRefused) {
    const DecodingError error = errorOf(R"([{"app":{"_0":"a"},"folder":{"_0":{}}}])");
    EXPECT_EQ(error.kind, DecodingError::Kind::TypeMismatch);
    EXPECT_EQ(error.description, u"Invalid number of keys found, expected one."_s);
    EXPECT_EQ(error.codingPath, QStringList{u"Index 0"_s});
}

TEST(LayoutCoding, AnItemWithNeitherCaseIsRefusedTheSameWay) {
    const DecodingError error = errorOf(R"([{"app":{"_0":"a"}},{"document":{"_0":"a"}}])");
    EXPECT_EQ(error.kind, DecodingError::Kind::TypeMismatch);
    EXPECT_EQ(error.description, u"Invalid number of keys found, expected one."_s);
    EXPECT_EQ(error.codingPath, QStringList{u"Index 1"_s});
    EXPECT_EQ(errorOf("[{}]").description, u"Invalid number of keys found, expected one."_s);
}

TEST(LayoutCoding, UnknownKeysOfAnItemAreIgnored) {
    EXPECT_EQ(itemsOf(R"([{"colour":3,"app":{"_0":"a","_1":false}}])"), LaunchItems{LaunchItem::app(u"a"_s)});
}

TEST(LayoutCoding, AMissingPayloadOrAWrongTypeIsRefused) {
    EXPECT_EQ(errorOf(R"([{"app":{}}])").kind, DecodingError::Kind::KeyNotFound);
    EXPECT_EQ(errorOf(R"([{"folder":{}}])").kind, DecodingError::Kind::KeyNotFound);
    EXPECT_EQ(errorOf(R"([{"app":"a"}])").kind, DecodingError::Kind::TypeMismatch);
    EXPECT_EQ(errorOf(R"([{"app":{"_0":1}}])").kind, DecodingError::Kind::TypeMismatch);
    EXPECT_EQ(errorOf(R"([{"app":{"_0":null}}])").kind, DecodingError::Kind::TypeMismatch);
    EXPECT_EQ(errorOf(R"([{"folder":{"_0":[]}}])").kind, DecodingError::Kind::TypeMismatch);
    EXPECT_EQ(errorOf(R"([7])").kind, DecodingError::Kind::TypeMismatch);
    EXPECT_EQ(errorOf(R"({"app":{"_0":"a"}})").kind, DecodingError::Kind::TypeMismatch);
}

TEST(LayoutCoding, AFolderNeedsEachKeyWithItsType) {
    const QByteArray text = "[" + folderText + "]";
    EXPECT_EQ(itemsOf(text).size(), 1U);
    const auto with = [&text](const char* from, const char* to) {
        return QByteArray(text).replace(from, to);
    };
    EXPECT_EQ(errorOf(with("\"id\"", "\"Id\"")).kind, DecodingError::Kind::KeyNotFound);
    EXPECT_EQ(errorOf(with("\"name\"", "\"title\"")).kind, DecodingError::Kind::KeyNotFound);
    EXPECT_EQ(errorOf(with("\"apps\"", "\"items\"")).kind, DecodingError::Kind::KeyNotFound);
    EXPECT_EQ(errorOf(with("\"Games\"", "1")).kind, DecodingError::Kind::TypeMismatch);
    const DecodingError error = errorOf(with("\"\\/Applications\\/Chess.app\"", "\"a\",true"));
    EXPECT_EQ(error.kind, DecodingError::Kind::TypeMismatch);
    EXPECT_EQ(error.codingPath, (QStringList{u"Index 0"_s, u"folder"_s, u"_0"_s, u"apps"_s, u"Index 1"_s}));
}

TEST(LayoutCoding, OnlyTheCanonicalFormOfAUuidIsRead) {
    const QByteArray text = "[" + folderText + "]";
    const auto withId = [&text](const QByteArray& id) {
        return QByteArray(text).replace("3F2504E0-4F89-11D3-9A0C-0305E82C3301", id);
    };
    EXPECT_EQ(itemsOf(withId("3f2504e0-4f89-11d3-9a0c-0305e82c3301")).front().asFolder()->id, chessId);
    for (const char* bad : {"", "3F2504E04F8911D39A0C0305E82C3301", "{3F2504E0-4F89-11D3-9A0C-0305E82C3301}",
                            "3F2504E0-4F89-11D3-9A0C-0305E82C330", "3F2504E0-4F89-11D3-9A0C-0305E82C330G",
                            "3F2504E0+4F89-11D3-9A0C-0305E82C3301"}) {
        EXPECT_EQ(errorOf(withId(bad)).kind, DecodingError::Kind::DataCorrupted) << bad;
    }
}

TEST(LayoutCoding, ATruncatedTextIsRefusedAtEveryLength) {
    const QByteArray text = "[" + folderText + "]";
    for (qsizetype length = 0; length < text.size(); ++length) {
        const auto decoded = decodeItems(text.first(length));
        EXPECT_TRUE(std::holds_alternative<DecodingError>(decoded)) << length;
    }
    EXPECT_EQ(errorOf("[{\"app\":{\"_0\":\"\xff\xfe\"}}]").kind, DecodingError::Kind::DataCorrupted);
}

TEST(LayoutCoding, DeepNestingIsRefused) {
    EXPECT_EQ(errorOf(QByteArray(100'000, '[')).kind, DecodingError::Kind::DataCorrupted);
}
