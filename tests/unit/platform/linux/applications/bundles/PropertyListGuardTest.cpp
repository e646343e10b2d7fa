#include "platform/linux/applications/bundles/PropertyListGuard.h"

#include "platform/linux/applications/bundles/BundlePropertyList.h"
#include "support/PropertyLists.h"

#include <gtest/gtest.h>

using namespace amberquill;
using namespace amberquill::desktop;
using namespace Qt::StringLiterals;

namespace {

const std::map<std::string, std::string> smallest = {{"CFBundleIdentifier", "org.example.App"},
                                                     {"CFBundleExecutable", "App"}};

// A reference of two bytes.
QByteArray to(int object) {
    return QByteArray(1, static_cast<char>(object >> 8)) + static_cast<char>(object & 0xFF);
}

// An array of two references to each next one: it unfolds to 2^levels values.
QByteArray doublingList(int levels) {
    std::vector<QByteArray> objects;
    for (int level = 1; level <= levels; ++level) {
        objects.push_back("\xA2" + to(level) + to(level));
    }
    objects.emplace_back("\x51x");
    return binaryOf(objects);
}

QByteArray nestedBinary(int levels) {
    std::vector<QByteArray> objects;
    for (int level = 1; level <= levels; ++level) {
        objects.push_back("\xA1" + to(level));
    }
    objects.emplace_back("\x51x");
    return binaryOf(objects);
}

QByteArray nestedXml(int levels, const QByteArray& open, const QByteArray& close) {
    return xmlPropertyList(open.repeated(levels) + close.repeated(levels));
}

} // namespace

TEST(PropertyListGuard, UsualListsAreSafe) {
    EXPECT_TRUE(isSafePropertyList(xmlDictionary(smallest)));
    EXPECT_TRUE(isSafePropertyList(binaryDictionary(smallest)));
    EXPECT_FALSE(isBinaryPropertyList(xmlDictionary(smallest)));
    EXPECT_TRUE(isBinaryPropertyList(binaryDictionary(smallest)));
}

TEST(PropertyListGuard, AListLargerThanAMebibyteIsUnsafe) {
    QByteArray list = xmlDictionary(smallest);
    list += QByteArray(maximumPropertyListBytes - list.size(), '\n');
    EXPECT_TRUE(isSafePropertyList(list));
    EXPECT_FALSE(isSafePropertyList(list + "\n"));
    EXPECT_FALSE(isSafePropertyList(QByteArray()));
}

TEST(PropertyListGuard, XmlNestedTooDeepIsUnsafe) {
    EXPECT_TRUE(isSafePropertyList(nestedXml(1000, "<array>", "</array>")));
    EXPECT_FALSE(isSafePropertyList(nestedXml(5000, "<array>", "</array>")));
    EXPECT_FALSE(isSafePropertyList(nestedXml(5000, "<dict><key>k</key>", "</dict>")));
    EXPECT_FALSE(isSafePropertyList(nestedXml(20'000, "<array><!-- </array> -->", "</array>")));
}

TEST(PropertyListGuard, XmlWithTooManyValuesIsUnsafe) {
    EXPECT_TRUE(
        isSafePropertyList(xmlPropertyList("<array>" + QByteArray("<true/>").repeated(1000) + "</array>")));
    EXPECT_FALSE(
        isSafePropertyList(xmlPropertyList("<array>" + QByteArray("<true/>").repeated(20'001) + "</array>")));
}

TEST(PropertyListGuard, XmlWithTooManyEntitiesIsUnsafe) {
    const auto list = [](int entities) {
        return xmlPropertyList("<string>" + QByteArray("&amp;").repeated(entities) + "</string>");
    };
    EXPECT_TRUE(isSafePropertyList(list(2000)));
    EXPECT_FALSE(isSafePropertyList(list(2001)));
}

TEST(PropertyListGuard, ABinaryListThatUnfoldsToTooManyValuesIsUnsafe) {
    EXPECT_TRUE(isSafePropertyList(doublingList(10)));
    EXPECT_FALSE(isSafePropertyList(doublingList(20)));
    EXPECT_FALSE(isSafePropertyList(doublingList(60)));
}

TEST(PropertyListGuard, ABinaryListThatUnfoldsToTooManyBytesIsUnsafe) {
    // One text of 60,000 characters, referenced a hundred times.
    const QByteArray text = "\x5F\x11\xEA\x60" + QByteArray(60'000, 'x');
    QByteArray array = "\xAF\x10\x64";
    for (int reference = 0; reference < 100; ++reference) {
        array += to(1);
    }
    const QByteArray list = binaryOf({array, text});
    EXPECT_LT(list.size(), 65'000);
    EXPECT_FALSE(isSafePropertyList(list));
    EXPECT_TRUE(isSafePropertyList(binaryOf({"\xA2" + to(1) + to(1), text})));
}

TEST(PropertyListGuard, ABinaryListNestedTooDeepOrInItselfIsUnsafe) {
    EXPECT_TRUE(isSafePropertyList(nestedBinary(64)));
    EXPECT_FALSE(isSafePropertyList(nestedBinary(65)));
    EXPECT_FALSE(isSafePropertyList(binaryOf({"\xA1" + to(0)})));
    EXPECT_FALSE(isSafePropertyList(binaryOf({"\xD1" + to(1) + to(2), "\x51k", "\xA1" + to(0)})));
}

TEST(PropertyListGuard, ABinaryListWithOffsetsOutsideIsUnsafe) {
    EXPECT_FALSE(isSafePropertyList("bplist00"));
    EXPECT_FALSE(isSafePropertyList("bplist00" + QByteArray(31, '\0')));
    EXPECT_FALSE(isSafePropertyList(binaryOf({"\xA1" + to(7)}))) << "no such object";
    EXPECT_FALSE(isSafePropertyList(binaryOf({"\x5Fxxx"}))) << "a length that is no number";
    EXPECT_FALSE(isSafePropertyList(binaryOf({"\x5F\x13\x7F\xFF\xFF\xFF\xFF\xFF\xFF\xFFx"_ba})))
        << "huge text";
    EXPECT_FALSE(isSafePropertyList(binaryOf({"\xAF\x13\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFFx"_ba})))
        << "huge array";
    EXPECT_FALSE(isSafePropertyList(binaryOf({"\x5F\x10\x20short"_ba}))) << "longer than the list";
    EXPECT_FALSE(isSafePropertyList(binaryOf({"\x67xy"_ba}))) << "two bytes a letter";
    EXPECT_FALSE(isSafePropertyList(binaryOf({"\x14"_ba}))) << "a number cut off";
    EXPECT_FALSE(isSafePropertyList(binaryOf({"\x7F"_ba}))) << "no kind of value";
    const QByteArray good = binaryDictionary(smallest);
    for (qsizetype at = good.size() - 26; at < good.size(); ++at) {
        for (const char byte : {'\0', '\1', '\x09', '\x7F', '\xFF'}) {
            QByteArray broken = good;
            broken[at] = byte;
            // Whatever the guard decides, the parser terminates.
            const auto list = parseBundlePropertyList(broken);
            EXPECT_TRUE(!list || isSafePropertyList(broken));
        }
    }
}

TEST(PropertyListGuard, EveryTruncatedListIsHandled) {
    for (const QByteArray& list : {binaryDictionary(smallest), xmlDictionary(smallest)}) {
        ASSERT_TRUE(parseBundlePropertyList(list));
        int read = 0;
        for (qsizetype size = 0; size < list.size(); ++size) {
            read += parseBundlePropertyList(list.left(size)) ? 1 : 0;
        }
        EXPECT_LT(read, 20); // nearly every cut is an invalid list
    }
}
