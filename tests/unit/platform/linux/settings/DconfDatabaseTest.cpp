#include "platform/linux/settings/DconfDatabase.h"

#include "support/DconfFiles.h"

#include <gtest/gtest.h>

using namespace amberquill;
using namespace amberquill::desktop;

namespace {

constexpr auto themeKey = "/org/gnome/desktop/interface/icon-theme";

std::optional<std::string> text(const QByteArray& database, std::string_view key = themeKey) {
    return dconfText({database.constData(), static_cast<std::size_t>(database.size())}, key);
}

// Written by the settings service, with three keys set.
const QByteArray fromTheService = QByteArray::fromHex(
    "4756617269616e7400000000000000001800000000010000000000280800000000000000010000000300000004000000"
    "06000000070000000700000007000000b0b72430040000000001000006004c00080100000c010000b988fdda00000000"
    "0c01000008004c00140100001801000039c53b4f01000000180100000a004c0024010000300100002205078802000000"
    "300100000a007600400100004a0100004b50900b060000004a01000004004c0050010000540100003b6faa0902000000"
    "540100000c0076006001000066010000d4b50200ffffffff6601000001004c00680100006c010000bf6bed7b02000000"
    "6c0100000b007600780100007e010000676e6f6d652f0000010000006465736b746f702f02000000696e746572666163"
    "652f000005000000070000000300000069636f6e2d7468656d65000000000000506170697275730000736f72672f0000"
    "00000000636c6f636b2d666f726d61743132680000732f0004000000637572736f722d73697a6500200000000069");

// Written by the settings service, with two booleans.
const QByteArray booleansFromTheService = QByteArray::fromHex(
    "4756617269616e74000000000000000018000000e4000000000000280700000000000000010000000200000004000000"
    "040000000500000005000000c07f5f3e05000000e400000011007600f8000000fb0000004b50900b02000000fb000000"
    "04004c000001000004010000d4b50200ffffffff0401000001004c00080100000c010000fe1f9e7f050000000c010000"
    "0f0076002001000023010000b988fdda060000002301000008004c002c0100003001000039c53b4f0400000030010000"
    "0a004c003c01000044010000b0b72430010000004401000006004c004c01000050010000656e61626c652d616e696d61"
    "74696f6e730000000000626f72672f00060000002f00000001000000636c6f636b2d73686f772d646174650000000000"
    "0100626465736b746f702f0005000000696e746572666163652f00000300000000000000676e6f6d652f000004000000");

std::optional<bool> boolean(const QByteArray& database, std::string_view key) {
    return dconfBoolean({database.constData(), static_cast<std::size_t>(database.size())}, key);
}

} // namespace

TEST(DconfDatabase, ATextIsFoundUnderItsKey) {
    for (const quint32 buckets : {1U, 2U, 5U, 31U}) {
        const auto database = dconfDatabase({{themeKey, "Papirus"},
                                             {"/org/gnome/desktop/interface/cursor-theme", "Other"},
                                             {"/org/mate/desktop/interface/icon-theme", "Third"}},
                                            buckets);
        EXPECT_EQ(text(database), "Papirus");
        EXPECT_EQ(text(database, "/org/mate/desktop/interface/icon-theme"), "Third");
        EXPECT_EQ(text(database, "/org/gnome/desktop/interface/"), std::nullopt);
        EXPECT_EQ(text(database, "/org/gnome/desktop/interface/missing"), std::nullopt);
        EXPECT_EQ(text(database, ""), std::nullopt);
    }
}

TEST(DconfDatabase, ADatabaseOfTheSettingsServiceIsRead) {
    EXPECT_EQ(text(fromTheService), "Papirus");
}

TEST(DconfDatabase, AKeyWithTheSameEndingIsNotFound) {
    const auto database = dconfDatabase({{"/x/org/gnome/desktop/interface/icon-theme", "Other"}}, 1);
    EXPECT_EQ(text(database), std::nullopt);
    EXPECT_EQ(text(database, "icon-theme"), std::nullopt);
}

TEST(DconfDatabase, AValueOfAnotherTypeIsIgnored) {
    auto database = dconfDatabase({{themeKey, "Papirus"}});
    const auto at = database.indexOf(QByteArray("Papirus\0\0s", 10));
    database[at + 9] = 'i';
    EXPECT_EQ(text(database), std::nullopt);
}

TEST(DconfDatabase, OtherContentIsNotADatabase) {
    EXPECT_EQ(text(""), std::nullopt);
    EXPECT_EQ(text("GVariant"), std::nullopt);
    EXPECT_EQ(text(QByteArray(1000, '\xFF')), std::nullopt);
}

TEST(DconfDatabase, ABrokenDatabaseDoesNotCrash) {
    const auto whole = dconfDatabase({{themeKey, "Papirus"}, {"/a/b", "c"}});
    for (qsizetype size = 0; size < whole.size(); ++size) {
        const auto answer = text(whole.first(size));
        EXPECT_TRUE(!answer || *answer == "Papirus");
    }
    int answered = 0;
    for (qsizetype at = 8; at + 4 <= whole.size(); ++at) {
        for (const auto* const value : {"\0\0\0\0", "\xFF\xFF\xFF\xFF", "\xF0\xFF\xFF\xFF", "\1\0\0\0"}) {
            auto broken = whole;
            broken.replace(at, 4, QByteArray(value, 4));
            answered += text(broken).has_value() ? 1 : 0;
        }
    }
    EXPECT_GT(answered, 0); // some overwritten bytes do not matter
}

TEST(DconfDatabase, ABooleanIsFoundUnderItsKey) {
    const auto database = dconfDatabase({{themeKey, "Papirus"}}, 3, {{"/a/on", true}, {"/a/off", false}});
    EXPECT_EQ(boolean(database, "/a/on"), true);
    EXPECT_EQ(boolean(database, "/a/off"), false);
    EXPECT_EQ(boolean(database, "/a/missing"), std::nullopt);
    EXPECT_EQ(boolean(database, themeKey), std::nullopt) << "a text";
    EXPECT_EQ(text(database, "/a/on"), std::nullopt);
    EXPECT_EQ(boolean(dconfDatabase({{"/a", std::string("\1\0b", 3)}}), "/a"), std::nullopt);
}

TEST(DconfDatabase, BooleansThatTheSettingsServiceWroteAreRead) {
    EXPECT_EQ(boolean(booleansFromTheService, "/org/gnome/desktop/interface/enable-animations"), false);
    EXPECT_EQ(boolean(booleansFromTheService, "/org/gnome/desktop/interface/clock-show-date"), true);
}
