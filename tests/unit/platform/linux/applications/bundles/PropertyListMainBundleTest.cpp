#include "platform/linux/applications/bundles/PropertyListMainBundle.h"

#include "support/PropertyLists.h"
#include "support/TemporaryTree.h"

#include <gtest/gtest.h>

using namespace amberquill;
using namespace amberquill::desktop;
using namespace Qt::StringLiterals;

TEST(PropertyListMainBundle, ReturnsTheListsTexts) {
    const TemporaryTree tree;
    const QString path =
        tree.write("Info.plist", xmlDictionary({{"CFBundleVersion", "1.2"}, {"SUFeedURL", "a&amp;b"}}));
    const PropertyListMainBundle bundle({path});
    EXPECT_EQ(bundle.text(u"CFBundleVersion"_s), u"1.2"_s);
    EXPECT_EQ(bundle.text(u"SUFeedURL"_s), u"a&b"_s);
    EXPECT_EQ(bundle.text(u"SUPublicEDKey"_s), std::nullopt);
}

TEST(PropertyListMainBundle, OtherValuesAreAbsent) {
    const TemporaryTree tree;
    const QString path =
        tree.write("Info.plist", "<plist><dict><key>a</key><integer>1</integer><key>b</key><string>"
                                 "two</string><key>c</key><array><string>x</string></array></dict>"
                                 "</plist>");
    const PropertyListMainBundle bundle({path});
    EXPECT_EQ(bundle.text(u"a"_s), std::nullopt);
    EXPECT_EQ(bundle.text(u"b"_s), u"two"_s);
    EXPECT_EQ(bundle.text(u"c"_s), std::nullopt);
}

TEST(PropertyListMainBundle, TheFirstListThatCanBeReadCounts) {
    const TemporaryTree tree;
    const QString broken = tree.write("broken.plist", "<plist><dict>");
    const QString first = tree.write("first.plist", xmlDictionary({{"a", "first"}}));
    const QString second = tree.write("second.plist", xmlDictionary({{"a", "second"}, {"b", "second"}}));
    const PropertyListMainBundle bundle({tree.path("missing.plist"), broken, first, second});
    EXPECT_EQ(bundle.text(u"a"_s), u"first"_s);
    EXPECT_EQ(bundle.text(u"b"_s), std::nullopt);
    EXPECT_EQ(PropertyListMainBundle({}).text(u"a"_s), std::nullopt);
}

TEST(PropertyListMainBundle, IsFoundWhereTheProgramIsInstalledOrBuilt) {
    EXPECT_EQ(
        mainBundlePaths(u"/usr/bin/amberquill"_s, {}),
        (QStringList{u"/usr/share/amberquill/Info.plist"_s, u"/usr/bin/share/amberquill/Info.plist"_s}));
    EXPECT_EQ(mainBundlePaths(u"/x/A.app/Contents/MacOS/amberquill"_s, u"/x/A.app"_s).value(0),
              u"/x/A.app/Contents/Info.plist"_s);
    EXPECT_EQ(mainBundlePaths({}, {}), QStringList());
}
