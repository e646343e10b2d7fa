#include "platform/linux/applications/bundles/BundlePropertyList.h"

#include "support/LogRecorder.h"
#include "support/PropertyLists.h"
#include "support/TemporaryTree.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

using namespace amberquill;
using namespace amberquill::desktop;
using namespace Qt::StringLiterals;

namespace {

const std::map<std::string, std::string> usual = {{"CFBundleIdentifier", "org.example.App"},
                                                  {"CFBundleExecutable", "App"},
                                                  {"CFBundleIconFile", "App.icns"},
                                                  {"CFBundleName", "Größe"}};

class BundlePropertyListTest : public testing::Test {
protected:
    // The list of a bundle whose Info.plist has these bytes.
    [[nodiscard]] std::optional<BundlePropertyList> read(const QByteArray& bytes) const {
        tree_.write("X.app/Contents/Info.plist", bytes);
        return readBundlePropertyList(tree_.path("X.app"));
    }

    [[nodiscard]] std::optional<QString> identifier() const {
        return PropertyListBundles().bundleIdentifier(tree_.path("X.app"));
    }

    TemporaryTree tree_;
};

} // namespace

TEST_F(BundlePropertyListTest, AnXmlListIsRead) {
    EXPECT_EQ(read(xmlDictionary(usual)), (BundlePropertyList{.folder = tree_.path("X.app"),
                                                              .gnustep = false,
                                                              .identifier = u"org.example.App"_s,
                                                              .executable = u"App"_s,
                                                              .iconFile = u"App.icns"_s}));
    EXPECT_EQ(identifier(), u"org.example.App"_s);
}

TEST_F(BundlePropertyListTest, ABinaryListHasTheSameValues) {
    const auto fromXml = read(xmlDictionary(usual));
    ASSERT_TRUE(fromXml);
    EXPECT_EQ(read(binaryDictionary(usual)), fromXml);
    EXPECT_EQ(identifier(), u"org.example.App"_s);
}

TEST_F(BundlePropertyListTest, AGnustepBundleKeepsItsListInItsResources) {
    tree_.write(
        "X.app/Resources/Info-gnustep.plist",
        xmlDictionary(
            {{"CFBundleIdentifier", "org.example.Gnu"}, {"NSExecutable", "Gnu"}, {"NSIcon", "Gnu.tiff"}}));
    EXPECT_EQ(readBundlePropertyList(tree_.path("X.app/")),
              (BundlePropertyList{.folder = tree_.path("X.app"),
                                  .gnustep = true,
                                  .identifier = u"org.example.Gnu"_s,
                                  .executable = u"Gnu"_s,
                                  .iconFile = u"Gnu.tiff"_s}));
    EXPECT_EQ(identifier(), u"org.example.Gnu"_s);
}

TEST_F(BundlePropertyListTest, TheListInContentsComesFirst) {
    tree_.write("X.app/Resources/Info-gnustep.plist", xmlDictionary({{"CFBundleIdentifier", "second"}}));
    EXPECT_EQ(read(xmlDictionary(usual))->identifier, u"org.example.App"_s);
    EXPECT_EQ(read("junk")->identifier, u"second"_s);
}

TEST_F(BundlePropertyListTest, TextsOfEveryScriptAreRead) {
    const std::map<std::string, std::string> texts = {{"CFBundleIdentifier", "größe.日本.😀"}};
    EXPECT_EQ(read(xmlDictionary(texts))->identifier, u"größe.日本.😀"_s);
    EXPECT_EQ(read(binaryDictionary(texts))->identifier, u"größe.日本.😀"_s);
}

TEST_F(BundlePropertyListTest, WithoutAnIdentifierThereIsNone) {
    for (const QByteArray& list :
         {xmlDictionary({{"CFBundleExecutable", "App"}}), xmlDictionary({{"CFBundleIdentifier", ""}}),
          xmlPropertyList("<dict><key>CFBundleIdentifier</key><integer>7</integer></dict>"),
          xmlPropertyList("<dict><key>CFBundleIdentifier</key><array/></dict>"),
          xmlPropertyList("<dict/>")}) {
        const auto read = this->read(list);
        ASSERT_TRUE(read) << list.toStdString();
        EXPECT_EQ(read->identifier, QString());
        EXPECT_EQ(identifier(), std::nullopt);
    }
}

TEST_F(BundlePropertyListTest, AListThatIsNotADictionaryIsRefused) {
    for (const char* const body :
         {"<array><string>CFBundleIdentifier</string></array>", "<string>x</string>", "", "<true/>"}) {
        EXPECT_EQ(read(xmlPropertyList(body)), std::nullopt) << body;
        EXPECT_EQ(identifier(), std::nullopt);
    }
}

TEST_F(BundlePropertyListTest, ABrokenListIsRefused) {
    for (const QByteArray& bytes :
         {QByteArray(), "junk"_ba, "<plist"_ba, "<plist><dict><key>"_ba, "bplist00"_ba,
          "bplist00 and more"_ba, "{ CFBundleIdentifier = x; }"_ba, QByteArray(2000, '\0'),
          QByteArray(2000, '<'), xmlDictionary(usual) + QByteArray(qsizetype{1024} * 1024, ' ')}) {
        EXPECT_EQ(read(bytes), std::nullopt) << bytes.left(40).toStdString();
        EXPECT_EQ(identifier(), std::nullopt);
    }
}

TEST_F(BundlePropertyListTest, ATextWithANulCountsAsAbsent) {
    // {CFBundleIdentifier: "a\0b"} as UTF-16.
    const auto list = read(binaryOf({"\xD1\0\1\0\2"_ba,
                                     "\x5F\x10\x12"
                                     "CFBundleIdentifier",
                                     "\x63\0a\0\0\0b"_ba}));
    ASSERT_TRUE(list);
    EXPECT_EQ(list->identifier, QString());
}

TEST_F(BundlePropertyListTest, FileNamesNeverLeadOutOfTheBundle) {
    for (const char* const name : {"../../bin/sh", "/bin/sh", "a/b", "..", "."}) {
        const auto list = read(xmlDictionary({{"CFBundleExecutable", name}, {"CFBundleIconFile", name}}));
        ASSERT_TRUE(list);
        EXPECT_EQ(list->executable, QString()) << name;
        EXPECT_EQ(list->iconFile, QString()) << name;
    }
}

TEST_F(BundlePropertyListTest, EntitiesAreNotExpanded) {
    QByteArray list = "<?xml version=\"1.0\"?><!DOCTYPE plist [<!ENTITY a \"aaaaaaaaaa\">";
    for (char name = 'b'; name <= 'j'; ++name) {
        const QByteArray before = QByteArray("&") + static_cast<char>(name - 1) + ";";
        list += QByteArray("<!ENTITY ") + name + " \"" + before.repeated(10) + "\">";
    }
    list += "<!ENTITY file SYSTEM \"file:///etc/hostname\">]><plist><dict>"
            "<key>CFBundleIdentifier</key><string>&j;&file;</string></dict></plist>";
    const auto read = this->read(list);
    EXPECT_TRUE(!read || read->identifier.size() < 20); // refused, or not expanded
}

TEST_F(BundlePropertyListTest, AFolderThatIsNotABundleHasNoList) {
    tree_.makeFolder("Empty.app");
    tree_.write("File.app", "text");
    tree_.link("Dangling.app", "missing");
    for (const char* const name : {"Empty.app", "File.app", "Dangling.app", "Missing.app"}) {
        EXPECT_EQ(readBundlePropertyList(tree_.path(name)), std::nullopt) << name;
    }
    EXPECT_EQ(readBundlePropertyList(u"X.app"_s), std::nullopt);
    EXPECT_EQ(readBundlePropertyList(QString()), std::nullopt);
}

TEST_F(BundlePropertyListTest, AListThatIsAPipeDoesNotBlock) {
    tree_.makeFolder("X.app/Contents");
    ASSERT_EQ(::mkfifo(tree_.at("X.app/Contents/Info.plist").c_str(), 0600), 0);
    EXPECT_EQ(readBundlePropertyList(tree_.path("X.app")), std::nullopt);
}

TEST_F(BundlePropertyListTest, ABundleBehindALinkKeepsTheLinksPath) {
    tree_.write("Real.app/Contents/Info.plist", xmlDictionary(usual));
    const auto list = readBundlePropertyList(tree_.link("Link.app", "Real.app"));
    ASSERT_TRUE(list);
    EXPECT_EQ(list->folder, tree_.path("Link.app"));
}

TEST_F(BundlePropertyListTest, ARefusedListIsLogged) {
    const auto log = debugLog("amberquill.bundles", [&] {
        EXPECT_FALSE(read("junk"));
        EXPECT_FALSE(readBundlePropertyList(tree_.path("missing.app")));
    });
    EXPECT_NE(log.find("property list refused: \"" + tree_.path("X.app/Contents/Info.plist").toStdString()),
              std::string::npos)
        << log;
    EXPECT_NE(log.find("not a bundle: \"" + tree_.path("missing.app").toStdString()), std::string::npos)
        << log;
    EXPECT_EQ(debugLog("amberquill.bundles", [&] { EXPECT_TRUE(read(xmlDictionary(usual))); }), "");
}
