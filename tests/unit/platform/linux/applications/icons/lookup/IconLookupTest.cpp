#include "platform/linux/applications/icons/lookup/IconLookup.h"

#include "platform/linux/environment/BaseFolders.h"
#include "support/IconFiles.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <thread>

using namespace amberquill;
using namespace amberquill::desktop;
using namespace Qt::StringLiterals;

namespace {

// One theme that inherits another, both in one base folder, and a folder for icons without a theme.
class IconLookupTest : public testing::Test {
protected:
    IconLookupTest() {
        writeTheme("test", "parent");
        writeTheme("parent", "");
        files_.makeFolder("pixmaps");
    }

    void writeTheme(const std::string& name, const QByteArray& inherits) const {
        files_.write("icons/" + name + "/index.theme",
                     themeIndex({{"48/apps", fixedSize(48)}, {"96/apps", fixedSize(96)}}, inherits));
    }
    void writeIcon(const std::string& path) const { files_.write(path, "x"); }

    QStringList baseFolders() const { return {files_.path("icons"), files_.path("pixmaps")}; }

    // The found file's path below the test's folder; empty: none.
    QString found(const IconLookup& lookup, const QString& icon, int edge = 48, int skip = 0) const {
        const auto file = lookup.find(icon, edge, skip);
        return file ? file->mid(files_.path().size() + 1) : QString();
    }
    QString found(const QString& icon, int edge = 48, int skip = 0) const {
        return found(IconLookup(baseFolders(), u"test"_s), icon, edge, skip);
    }

    TemporaryTree files_;
};

} // namespace

TEST_F(IconLookupTest, TheThemeComesBeforeItsParentsAndTheyBeforeHicolor) {
    writeIcon("icons/hicolor/48x48/apps/x.png");
    EXPECT_EQ(found(u"x"_s), u"icons/hicolor/48x48/apps/x.png"_s);
    writeIcon("icons/parent/48/apps/x.png");
    EXPECT_EQ(found(u"x"_s), u"icons/parent/48/apps/x.png"_s);
    writeIcon("icons/test/96/apps/x.png");
    EXPECT_EQ(found(u"x"_s), u"icons/test/96/apps/x.png"_s); // even in another size
}

TEST_F(IconLookupTest, HicolorIsLastWhereverAThemeNamesIt) {
    writeTheme("test", "hicolor,parent");
    writeIcon("icons/hicolor/48x48/apps/x.png");
    writeIcon("icons/parent/48/apps/x.png");
    EXPECT_EQ(found(u"x"_s), u"icons/parent/48/apps/x.png"_s);
    EXPECT_EQ(found(u"x"_s, 48, 1), u"icons/hicolor/48x48/apps/x.png"_s);
    EXPECT_EQ(found(u"x"_s, 48, 2), u""_s);
}

TEST_F(IconLookupTest, ParentsAreSearchedDepthFirst) {
    writeTheme("test", "a,b");
    writeTheme("a", "grandparent");
    writeTheme("b", "");
    writeTheme("grandparent", "");
    writeIcon("icons/b/48/apps/x.png");
    writeIcon("icons/grandparent/48/apps/x.png");
    EXPECT_EQ(found(u"x"_s), u"icons/grandparent/48/apps/x.png"_s);
}

TEST_F(IconLookupTest, ThemesThatInheritEachOtherAreSearchedOnce) {
    writeTheme("parent", "test,parent");
    writeIcon("icons/parent/48/apps/x.png");
    EXPECT_EQ(found(u"x"_s), u"icons/parent/48/apps/x.png"_s);
    EXPECT_EQ(found(u"x"_s, 48, 1), u""_s);
    EXPECT_EQ(found(u"missing"_s), u""_s);
}

TEST_F(IconLookupTest, AMissingThemeLeavesHicolor) {
    writeIcon("icons/hicolor/48x48/apps/x.png");
    for (const auto& theme : {u"missing"_s, u""_s, u"../icons/test"_s, u"."_s}) {
        EXPECT_EQ(found(IconLookup(baseFolders(), theme), u"x"_s), u"icons/hicolor/48x48/apps/x.png"_s);
    }
}

TEST_F(IconLookupTest, IconsWithoutAThemeAreFoundLast) {
    writeIcon("pixmaps/x.xpm");
    EXPECT_EQ(found(u"x"_s), u"pixmaps/x.xpm"_s);
    writeIcon("icons/x.png");
    EXPECT_EQ(found(u"x"_s), u"icons/x.png"_s);
    writeIcon("icons/hicolor/48x48/apps/x.png");
    EXPECT_EQ(found(u"x"_s), u"icons/hicolor/48x48/apps/x.png"_s);
    EXPECT_EQ(found(u"x"_s, 48, 2), u"pixmaps/x.xpm"_s);
}

TEST_F(IconLookupTest, WithoutAThemeADrawingComesFirst) {
    writeIcon("pixmaps/x.png");
    writeIcon("pixmaps/x.svg");
    writeIcon("pixmaps/x.xpm");
    EXPECT_EQ(found(u"x"_s), u"pixmaps/x.svg"_s);
    EXPECT_EQ(found(u"x"_s, 48, 1), u"pixmaps/x.png"_s);
    EXPECT_EQ(found(u"x"_s, 48, 2), u"pixmaps/x.xpm"_s);
    writeIcon("icons/x.png");
    EXPECT_EQ(found(u"x"_s), u"icons/x.png"_s); // the more wanted folder first
}

TEST_F(IconLookupTest, AdwaitaIsTheLastFallback) {
    writeTheme("Adwaita", "hicolor,parent");
    writeIcon("icons/Adwaita/48/apps/x.png");
    writeIcon("icons/Adwaita/96/apps/x.png");
    EXPECT_EQ(found(u"x"_s), u"icons/Adwaita/48/apps/x.png"_s);
    EXPECT_EQ(found(u"x"_s, 48, 1), u"icons/Adwaita/96/apps/x.png"_s);
    EXPECT_EQ(found(u"x"_s, 48, 2), u""_s);
    writeIcon("pixmaps/x.png"); // a program's own icon comes before it
    EXPECT_EQ(found(u"x"_s), u"pixmaps/x.png"_s);
    EXPECT_EQ(found(u"x"_s, 48, 1), u"icons/Adwaita/48/apps/x.png"_s);
}

TEST_F(IconLookupTest, AdwaitaIsNotSearchedTwice) {
    writeTheme("test", "Adwaita");
    writeTheme("Adwaita", "");
    writeIcon("icons/Adwaita/48/apps/x.png");
    writeIcon("icons/hicolor/48x48/apps/x.png");
    EXPECT_EQ(found(u"x"_s), u"icons/Adwaita/48/apps/x.png"_s);
    EXPECT_EQ(found(u"x"_s, 48, 1), u"icons/hicolor/48x48/apps/x.png"_s);
    EXPECT_EQ(found(u"x"_s, 48, 2), u""_s);
}

TEST_F(IconLookupTest, ANameMayHaveAnExtension) {
    writeIcon("icons/test/48/apps/foo.svg");
    EXPECT_EQ(found(u"foo.png"_s), u"icons/test/48/apps/foo.svg"_s);
    EXPECT_EQ(found(u"foo.xpm"_s), u"icons/test/48/apps/foo.svg"_s);
    EXPECT_EQ(found(u"foo.jpg"_s), u""_s);
    writeIcon("icons/test/48/apps/bar.png.png");
    EXPECT_EQ(found(u"bar.png"_s), u"icons/test/48/apps/bar.png.png"_s);
}

TEST_F(IconLookupTest, ANameWithDotsIsWhole) {
    writeIcon("icons/test/48/apps/org.example.App.png");
    EXPECT_EQ(found(u"org.example.App"_s), u"icons/test/48/apps/org.example.App.png"_s);
    EXPECT_EQ(found(u"org.example"_s), u""_s);
}

TEST_F(IconLookupTest, NamesAreNotAsciiOnly) {
    writeIcon("icons/test/48/apps/Über die Brücke.png");
    EXPECT_EQ(found(u"Über die Brücke"_s), u"icons/test/48/apps/Über die Brücke.png"_s);
}

TEST_F(IconLookupTest, AnAbsolutePathMustBeARegularFile) {
    const auto file = files_.write("anywhere/icon.gif", "x");
    const IconLookup lookup(baseFolders(), u"test"_s);
    EXPECT_EQ(lookup.find(file, 48), file);
    EXPECT_EQ(lookup.find(file, 48, 1), std::nullopt);
    const auto link = files_.link("anywhere/link.png", file.toStdString());
    EXPECT_EQ(lookup.find(link, 48), link);
    EXPECT_EQ(lookup.find(files_.path("anywhere"), 48), std::nullopt);
    EXPECT_EQ(lookup.find(files_.path("anywhere/missing.png"), 48), std::nullopt);
    const auto pipe = files_.path("anywhere/pipe.png");
    ASSERT_EQ(::mkfifo(pipe.toUtf8().constData(), 0600), 0);
    EXPECT_EQ(lookup.find(pipe, 48), std::nullopt);
}

TEST_F(IconLookupTest, RelativePathsAreRefused) {
    writeIcon("icons/secret.png");
    writeIcon("icons/test/48/apps/x.png");
    for (const auto& icon : {u""_s, u"."_s, u".."_s, u"../secret"_s, u"apps/x"_s, u"test/48/apps/x"_s,
                             u"x/../x"_s, u"./x"_s, QString(5000, u'x'), QString(u'x') + QChar(0) + u'y'}) {
        EXPECT_EQ(found(icon), u""_s) << icon.toStdString();
    }
    EXPECT_EQ(IconLookup(baseFolders(), u"test"_s).find(u'/' + QString(QChar(0)), 48), std::nullopt);
}

TEST_F(IconLookupTest, AnswersAreRememberedUntilForget) {
    IconLookup lookup(baseFolders(), u"test"_s);
    EXPECT_EQ(found(lookup, u"x"_s), u""_s);
    writeIcon("icons/test/48/apps/x.png");
    EXPECT_EQ(found(lookup, u"x"_s), u""_s);
    lookup.forget();
    EXPECT_EQ(found(lookup, u"x"_s), u"icons/test/48/apps/x.png"_s);
    files_.remove("icons");
    EXPECT_EQ(found(lookup, u"x"_s), u"icons/test/48/apps/x.png"_s);
    lookup.forget();
    EXPECT_EQ(found(lookup, u"x"_s), u""_s);
}

TEST_F(IconLookupTest, ThreadsGetTheSameAnswers) {
    for (int i = 0; i < 50; ++i) {
        writeIcon("icons/test/48/apps/icon" + std::to_string(i) + ".png");
    }
    IconLookup lookup(baseFolders(), u"test"_s);
    std::atomic<int> wrong = 0;
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 4; ++thread) {
        threads.emplace_back([&, thread] {
            for (int i = 0; i < 200; ++i) {
                const auto number = QString::number((i * 7 + thread) % 60);
                const auto expected =
                    number.toInt() < 50 ? u"icons/test/48/apps/icon"_s + number + u".png"_s : QString();
                wrong += found(lookup, u"icon"_s + number) == expected ? 0 : 1;
                if (i % 50 == 49) {
                    lookup.forget();
                }
            }
        });
    }
    for (auto& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(wrong, 0);
}

TEST(IconBaseFolders, TheUsersOwnComeFirstAndPixmapsLast) {
    const DataFolders data{
        {u"/home/me/.local/share"_s, u"/usr/share"_s, u"/var/lib/flatpak/exports/share"_s}};
    EXPECT_EQ(iconBaseFolders(u"/home/me"_s, data),
              (QStringList{u"/home/me/.icons"_s, u"/home/me/.local/share/icons"_s, u"/usr/share/icons"_s,
                           u"/var/lib/flatpak/exports/share/icons"_s, u"/usr/share/pixmaps"_s}));
}
