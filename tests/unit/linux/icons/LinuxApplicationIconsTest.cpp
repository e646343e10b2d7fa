#include "platform/linux/applications/icons/LinuxApplicationIcons.h"

#include "support/IconFiles.h"
#include "support/PropertyLists.h"
#include "support/WaitUntil.h"

#include <QDir>
#include <QFile>
#include <csignal>
#include <gtest/gtest.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

using namespace amberquill;
using namespace amberquill::desktop;
using namespace Qt::StringLiterals;

namespace {

class LinuxApplicationIconsTest : public testing::Test {
protected:
    LinuxApplicationIconsTest() {
        files_.write("icons/test/index.theme",
                     themeIndex({{"48/apps", fixedSize(48)}, {"96/apps", fixedSize(96)}}));
    }

    LinuxApplicationIcons::Settings settings() const {
        return {.baseFolders = {files_.path("icons"), files_.path("pixmaps")},
                .theme = u"test"_s,
                .journalFolder = files_.path("cache/decoding"),
                .locale = entryLocaleFor({"de"})};
    }

    QString writeEntry(const QByteArray& icon, const QByteArray& more = {}) const {
        return files_.write("applications/x.desktop",
                            "[Desktop Entry]\nType=Application\nName=X\nExec=true\nIcon=" + icon + "\n" +
                                more);
    }
    QImage image(const QString& path, int edge = 48) const {
        return LinuxApplicationIcons(settings()).image(path, edge);
    }
    QImage entryImage(const QByteArray& icon, int edge = 48) const { return image(writeEntry(icon), edge); }

    QString writeBundle(const std::map<std::string, std::string>& keys) const {
        files_.write("X.app/Contents/Info.plist", xmlDictionary(keys));
        return files_.path("X.app");
    }

    // Gray where there is no picture.
    static QRgb colour(const QImage& image) {
        return image.isNull() ? qRgb(128, 128, 128) : image.pixel(image.width() / 2, image.height() / 2);
    }

    TemporaryTree files_;
};

constexpr QRgb none = 0xFF808080U;

} // namespace

TEST_F(LinuxApplicationIconsTest, AnEntrysIconComesFromTheThemeInExactlyThePixelsAskedFor) {
    files_.write("icons/test/48/apps/x.png", png(48, 48, QColor(255, 0, 0)));
    files_.write("icons/test/96/apps/x.png", png(96, 96, QColor(0, 0, 255)));
    const auto small = entryImage("x", 48);
    EXPECT_EQ(small.size(), QSize(48, 48));
    EXPECT_EQ(small.format(), QImage::Format_ARGB32_Premultiplied);
    EXPECT_EQ(small.devicePixelRatio(), 1.0);
    EXPECT_EQ(colour(small), red);
    const auto large = entryImage("x.png", 75);
    EXPECT_EQ(large.size(), QSize(75, 75));
    EXPECT_EQ(colour(large), blue);
}

TEST_F(LinuxApplicationIconsTest, AnEntrysIconMayBeAFile) {
    const auto path = files_.write("elsewhere/picture.png", png(30, 30, QColor(0, 255, 0)));
    EXPECT_EQ(colour(entryImage(path.toUtf8())), green);
    EXPECT_EQ(colour(entryImage("../elsewhere/picture.png")), none);
    EXPECT_EQ(colour(entryImage("elsewhere/picture.png")), none);
}

TEST_F(LinuxApplicationIconsTest, TheIconOfTheUsersLanguageIsTaken) {
    files_.write("icons/test/48/apps/x.png", png(48, 48, QColor(255, 0, 0)));
    files_.write("icons/test/48/apps/y.png", png(48, 48, QColor(0, 255, 0)));
    EXPECT_EQ(colour(image(writeEntry("x", "Icon[de]=y\nIcon[fr]=x\n"))), green);
}

TEST_F(LinuxApplicationIconsTest, NoneOrABrokenOneIsNull) {
    EXPECT_TRUE(entryImage("").isNull());
    EXPECT_TRUE(entryImage("missing").isNull());
    files_.write("icons/test/48/apps/x.png", "not a picture");
    EXPECT_TRUE(entryImage("x").isNull());
    EXPECT_TRUE(image(files_.path("applications/missing.desktop")).isNull());
    EXPECT_TRUE(image(files_.write("applications/broken.desktop", "[Desktop Entry]\nIcon=x\n")).isNull());
    EXPECT_TRUE(image(files_.path("icons/test/48/apps/x.png")).isNull());
    EXPECT_TRUE(image(u""_s).isNull());
    EXPECT_TRUE(image(u".desktop"_s).isNull());
    EXPECT_TRUE(image(u".app"_s).isNull());
}

TEST_F(LinuxApplicationIconsTest, ABrokenFileGivesWayToTheNextBest) {
    files_.write("icons/test/48/apps/x.png", "not a picture");
    files_.write("icons/test/96/apps/x.png", png(96, 96).first(60));
    files_.write("icons/hicolor/48x48/apps/x.png", png(48, 48, QColor(0, 0, 255)));
    EXPECT_EQ(colour(entryImage("x")), blue);
}

TEST_F(LinuxApplicationIconsTest, AFileThatIsNotWhatItsNameSaysIsReadForWhatItIs) {
    files_.write("icons/test/48/apps/x.svg", png(48, 48, QColor(0, 255, 0)));
    EXPECT_EQ(colour(entryImage("x")), green);
    files_.write("icons/test/48/apps/y.png", redSquare);
    EXPECT_EQ(colour(entryImage("y")), red);
}

TEST_F(LinuxApplicationIconsTest, AFileThatIsTooLargeIsNotRead) {
    files_.write("icons/test/48/apps/x.png", png(48, 48) + QByteArray(9 * 1024 * 1024, '\0'));
    EXPECT_TRUE(entryImage("x").isNull());
}

TEST_F(LinuxApplicationIconsTest, WhatIsNoFileIsNotWaitedFor) {
    ASSERT_EQ(::mkfifo(files_.at("pipe.png").c_str(), 0600), 0);
    EXPECT_TRUE(entryImage(files_.path("pipe.png").toUtf8()).isNull());
    ASSERT_EQ(::mkfifo(files_.at("pipe.desktop").c_str(), 0600), 0);
    EXPECT_TRUE(image(files_.path("pipe.desktop")).isNull());
    EXPECT_TRUE(entryImage("/dev/zero").isNull());
}

TEST_F(LinuxApplicationIconsTest, WhatStandsInForAnIconComesFromTheTheme) {
    LinuxApplicationIcons icons(settings());
    EXPECT_TRUE(icons.standIn(48).isNull());
    files_.write("icons/test/48/apps/application-x-executable.png", "not a picture");
    files_.write("icons/test/96/apps/application-x-executable.png", png(96, 96, QColor(0, 0, 255)));
    icons.forget();
    const auto picture = icons.standIn(75);
    EXPECT_EQ(colour(picture), blue) << "the next best one, where a file is broken";
    EXPECT_EQ(picture.size(), QSize(75, 75));
    EXPECT_TRUE(entryImage("missing").isNull()) << "it is no application's own";
}

TEST_F(LinuxApplicationIconsTest, ABundlesIconStandsInItsResources) {
    const auto bundle = writeBundle({{"CFBundleIconFile", "AppIcon"}});
    EXPECT_EQ(colour(image(bundle)), none);
    files_.write("X.app/Contents/Resources/AppIcon.png", png(64, 64, QColor(0, 0, 255)));
    EXPECT_EQ(colour(image(bundle)), blue);
    files_.write("X.app/Contents/Resources/AppIcon.icns",
                 icns({icnsChunk("ic07", png(64, 64, QColor(0, 255, 0)))}));
    EXPECT_EQ(colour(image(bundle)), green);
    files_.write("X.app/Contents/Resources/AppIcon", png(64, 64, QColor(255, 0, 0)));
    EXPECT_EQ(colour(image(bundle, 120)), red);
    EXPECT_EQ(image(bundle, 120).size(), QSize(120, 120));
}

TEST_F(LinuxApplicationIconsTest, ABundlesIconMayBeNamedWithItsEnding) {
    files_.write("X.app/Contents/Resources/AppIcon.icns",
                 icns({icnsChunk("ic07", png(64, 64, QColor(0, 255, 0)))}));
    EXPECT_EQ(colour(image(writeBundle({{"CFBundleIconFile", "AppIcon.icns"}}))), green);
    EXPECT_EQ(colour(image(writeBundle({{"CFBundleIconFile", "AppIcon.png"}}))), none);
}

TEST_F(LinuxApplicationIconsTest, AGnustepBundlesIconStandsInItsResources) {
    files_.write("Y.app/Resources/Info-gnustep.plist",
                 xmlDictionary({{"NSIcon", "Y.tiff"}, {"NSExecutable", "Y"}}));
    files_.write("Y.app/Resources/Y.tiff", encoded(filledImage(48, 48, QColor(0, 255, 0)), "tiff"));
    EXPECT_EQ(colour(image(files_.path("Y.app"))), green);
    files_.write("Y.app/Resources/Info-gnustep.plist",
                 xmlDictionary({{"NSIcon", "Y"}, {"NSExecutable", "Y"}}));
    EXPECT_EQ(colour(image(files_.path("Y.app"))), green);
}

TEST_F(LinuxApplicationIconsTest, ABundlesIconDoesNotLeadElsewhere) {
    const auto outside = files_.write("outside.png", png(48, 48, QColor(0, 255, 0)));
    files_.makeFolder("X.app/Contents/Resources");
    for (const auto& name : {std::string("../../../outside.png"), outside.toStdString(), std::string(".."),
                             std::string("."), std::string(""), std::string("sub/../../../../outside.png")}) {
        EXPECT_EQ(colour(image(writeBundle({{"CFBundleIconFile", name}}))), none) << name;
    }
    EXPECT_EQ(colour(image(writeBundle({{"CFBundleName", "X"}}))), none);
}

TEST_F(LinuxApplicationIconsTest, WhatIsRememberedOfFoldersIsForgottenWhenAsked) {
    LinuxApplicationIcons icons(settings());
    const auto entry = writeEntry("x");
    EXPECT_EQ(colour(icons.image(entry, 48)), none);
    files_.write("icons/test/48/apps/x.png", png(48, 48, QColor(255, 0, 0)));
    EXPECT_EQ(colour(icons.image(entry, 48)), none);
    icons.forget();
    EXPECT_EQ(colour(icons.image(entry, 48)), red);
    files_.write("icons/test/48/apps/x.png",
                 png(48, 48, QColor(0, 0, 255))); // the picture itself is not kept
    EXPECT_EQ(colour(icons.image(entry, 48)), blue);
}

TEST_F(LinuxApplicationIconsTest, ThreadsGetTheSamePictures) {
    std::vector<QString> entries;
    for (int i = 0; i < 30; ++i) {
        const auto name = "icon" + std::to_string(i);
        files_.write("icons/test/48/apps/" + name + (i % 2 == 0 ? ".png" : ".svg"),
                     i % 2 == 0 ? png(48, 48, QColor(255, 0, 0)) : redSquare);
        entries.push_back(files_.write("applications/" + name + ".desktop",
                                       "[Desktop Entry]\nType=Application\nName=X\nExec=true\nIcon=" +
                                           QByteArray::fromStdString(name) + "\n"));
    }
    LinuxApplicationIcons icons(settings());
    std::atomic<int> right = 0;
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 4; ++thread) {
        threads.emplace_back([&, thread] {
            for (std::size_t i = 0; i < entries.size(); ++i) {
                const auto& entry = entries[(i + static_cast<std::size_t>(thread) * 7) % entries.size()];
                right += colour(icons.image(entry, 40 + thread)) == red ? 1 : 0;
                if (i == 20) {
                    icons.forget();
                }
            }
        });
    }
    for (auto& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(right, 4 * 30);
}

// A child decodes and is killed in the middle of it; the next process refuses the file.
TEST_F(LinuxApplicationIconsTest, AnIconDuringWhichTheProcessDiedIsRefusedUntilItChanges) {
    const auto file = files_.write("icons/test/48/apps/x.png", png(2'000, 2'000));
    const auto entry = writeEntry("x");
    const auto child = ::fork();
    if (child == 0) {
        ::prctl(PR_SET_PDEATHSIG, SIGKILL); // should the test end before it kills it
        while (true) {                      // each time as if it had just started
            static_cast<void>(LinuxApplicationIcons(settings()).image(entry, 48));
        }
    }
    const auto isNoted = [&] {
        const QDir folder(files_.path("cache/decoding"));
        for (const auto& name : folder.entryList({u"decoding-*"_s}, QDir::Files)) {
            QFile notes(folder.filePath(name));
            const auto content = notes.open(QIODevice::ReadOnly) ? notes.readAll() : QByteArray();
            if (content.contains(file.toUtf8()) && !content.startsWith(QByteArray(4, '\0'))) {
                return true;
            }
        }
        return false;
    };
    int status = 0;
    bool isStopped = true;
    const bool isCaught = waitUntil([&] {
        ::kill(child, SIGSTOP);
        isStopped = ::waitpid(child, &status, WUNTRACED) == child && WIFSTOPPED(status);
        if (!isStopped || isNoted()) {
            return true;
        }
        ::kill(child, SIGCONT);
        return false;
    });
    ASSERT_TRUE(isStopped) << "the child has ended by itself: " << status;
    ASSERT_EQ(::kill(child, SIGKILL), 0);
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFSIGNALED(status));
    ASSERT_TRUE(isCaught) << "that an icon is being decoded is never noted";

    EXPECT_EQ(colour(image(entry)), none);
    files_.write("icons/test/48/apps/x.png", png(48, 48, QColor(0, 0, 255)));
    EXPECT_EQ(colour(image(entry)), blue);
}
