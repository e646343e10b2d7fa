#include "platform/linux/applications/icons/LinuxApplicationIcons.h"

#include "platform/linux/applications/icons/workers/IconWorkerPool.h"
#include "platform/linux/applications/icons/workers/WorkerProgram.h"
#include "support/IconFiles.h"
#include "support/LogRecorder.h"
#include "support/PropertyLists.h"
#include "support/TestPaths.h"
#include "workers/WorkerProcesses.h"

#include <atomic>
#include <gtest/gtest.h>
#include <random>
#include <thread>

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
                .cacheFolder = files_.path("cache/Amberquill"),
                .version = "1.0",
                .locale = entryLocaleFor({"de"})};
    }

    QString writeEntry(const QByteArray& icon, const QByteArray& more = {}) const {
        return files_.write("applications/x.desktop",
                            "[Desktop Entry]\nType=Application\nName=X\nExec=true\nIcon=" + icon + "\n" +
                                more);
    }
    // By a new object, which has read nothing yet.
    QImage image(const QString& path, int edge = 48) {
        return LinuxApplicationIcons(settings(), workers_).image(path, edge);
    }
    QImage entryImage(const QByteArray& icon, int edge = 48) { return image(writeEntry(icon), edge); }

    QString writeBundle(const std::map<std::string, std::string>& keys) const {
        files_.write("X.app/Contents/Info.plist", xmlDictionary(keys));
        return files_.path("X.app");
    }

    // Gray for a null image.
    static QRgb colour(const QImage& image) {
        return image.isNull() ? qRgb(128, 128, 128) : image.pixel(image.width() / 2, image.height() / 2);
    }

    TemporaryTree files_;
    // The real program.
    IconWorkerPool workers_{
        {.program = installedWorkerProgram(testProgram(u"../amberquill"_s), processEnvironment()),
         .limits = {.start = std::chrono::seconds(60),
                    .picture = std::chrono::seconds(60),
                    .end = std::chrono::seconds(60)}}};
};

constexpr QRgb none = 0xFF808080U;

} // namespace

TEST_F(LinuxApplicationIconsTest, AnEntrysIconComesFromTheThemeInTheRequestedSize) {
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

TEST_F(LinuxApplicationIconsTest, AMissingOrBrokenIconIsNull) {
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

TEST_F(LinuxApplicationIconsTest, ABrokenFileIsReplacedByTheNextBest) {
    files_.write("icons/test/48/apps/x.png", "not a picture");
    files_.write("icons/test/96/apps/x.png", png(96, 96).first(60));
    files_.write("icons/hicolor/48x48/apps/x.png", png(48, 48, QColor(0, 0, 255)));
    EXPECT_EQ(colour(entryImage("x")), blue);
}

TEST_F(LinuxApplicationIconsTest, TheFormatIsDetectedNotTakenFromTheName) {
    files_.write("icons/test/48/apps/x.svg", png(48, 48, QColor(0, 255, 0)));
    EXPECT_EQ(colour(entryImage("x")), green);
    files_.write("icons/test/48/apps/y.png", redSquare);
    EXPECT_EQ(colour(entryImage("y")), red);
}

TEST_F(LinuxApplicationIconsTest, AFileThatIsTooLargeIsNotRead) {
    files_.write("icons/test/48/apps/x.png", png(48, 48) + QByteArray(9 * 1024 * 1024, '\0'));
    EXPECT_TRUE(entryImage("x").isNull());
}

TEST_F(LinuxApplicationIconsTest, APipeInPlaceOfAnIconDoesNotBlock) {
    ASSERT_EQ(::mkfifo(files_.at("pipe.png").c_str(), 0600), 0);
    EXPECT_TRUE(entryImage(files_.path("pipe.png").toUtf8()).isNull());
    ASSERT_EQ(::mkfifo(files_.at("pipe.desktop").c_str(), 0600), 0);
    EXPECT_TRUE(image(files_.path("pipe.desktop")).isNull());
    EXPECT_TRUE(entryImage("/dev/zero").isNull());
}

TEST_F(LinuxApplicationIconsTest, TheGenericIconComesFromTheTheme) {
    LinuxApplicationIcons icons(settings(), workers_);
    EXPECT_TRUE(icons.genericIcon(48).isNull());
    files_.write("icons/test/48/apps/application-x-executable.png", "not a picture");
    files_.write("icons/test/96/apps/application-x-executable.png", png(96, 96, QColor(0, 0, 255)));
    icons.forget();
    const auto picture = icons.genericIcon(75);
    EXPECT_EQ(colour(picture), blue) << "the next best one, where a file is broken";
    EXPECT_EQ(picture.size(), QSize(75, 75));
    EXPECT_TRUE(entryImage("missing").isNull()) << "it is no application's own";
}

TEST_F(LinuxApplicationIconsTest, ABundlesIconIsInItsResources) {
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

TEST_F(LinuxApplicationIconsTest, ABundlesIconMayBeNamedWithItsExtension) {
    files_.write("X.app/Contents/Resources/AppIcon.icns",
                 icns({icnsChunk("ic07", png(64, 64, QColor(0, 255, 0)))}));
    EXPECT_EQ(colour(image(writeBundle({{"CFBundleIconFile", "AppIcon.icns"}}))), green);
    EXPECT_EQ(colour(image(writeBundle({{"CFBundleIconFile", "AppIcon.png"}}))), none);
}

TEST_F(LinuxApplicationIconsTest, AGnustepBundlesIconIsInItsResources) {
    files_.write("Y.app/Resources/Info-gnustep.plist",
                 xmlDictionary({{"NSIcon", "Y.tiff"}, {"NSExecutable", "Y"}}));
    files_.write("Y.app/Resources/Y.tiff", encoded(filledImage(48, 48, QColor(0, 255, 0)), "tiff"));
    EXPECT_EQ(colour(image(files_.path("Y.app"))), green);
    files_.write("Y.app/Resources/Info-gnustep.plist",
                 xmlDictionary({{"NSIcon", "Y"}, {"NSExecutable", "Y"}}));
    EXPECT_EQ(colour(image(files_.path("Y.app"))), green);
}

TEST_F(LinuxApplicationIconsTest, ABundlesIconCannotBeOutsideOfIt) {
    const auto outside = files_.write("outside.png", png(48, 48, QColor(0, 255, 0)));
    files_.makeFolder("X.app/Contents/Resources");
    for (const auto& name : {std::string("../../../outside.png"), outside.toStdString(), std::string(".."),
                             std::string("."), std::string(""), std::string("sub/../../../../outside.png")}) {
        EXPECT_EQ(colour(image(writeBundle({{"CFBundleIconFile", name}}))), none) << name;
    }
    EXPECT_EQ(colour(image(writeBundle({{"CFBundleName", "X"}}))), none);
}

TEST_F(LinuxApplicationIconsTest, ForgetReadsTheFoldersAgain) {
    LinuxApplicationIcons icons(settings(), workers_);
    const auto entry = writeEntry("x");
    EXPECT_EQ(colour(icons.image(entry, 48)), none);
    files_.write("icons/test/48/apps/x.png", png(48, 48, QColor(255, 0, 0)));
    EXPECT_EQ(colour(icons.image(entry, 48)), none);
    icons.forget();
    EXPECT_EQ(colour(icons.image(entry, 48)), red);
    files_.write("icons/test/48/apps/x.png", png(48, 48, QColor(0, 0, 255))); // pictures are not kept
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
    LinuxApplicationIcons icons(settings(), workers_);
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

TEST_F(LinuxApplicationIconsTest, ADrawingWithTextHasItsText) {
    files_.write("icons/test/48/apps/x.svg",
                 svg(R"svg(<text x="0" y="90" font-size="100" fill="#0000ff">MM</text>)svg"));
    const auto picture = entryImage("x", 96);
    ASSERT_EQ(picture.size(), QSize(96, 96));
    int drawn = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            drawn += picture.pixel(x, y) == blue ? 1 : 0;
        }
    }
    EXPECT_GT(drawn, 500);
}

TEST_F(LinuxApplicationIconsTest, EveryPictureIsDecodedWhileProcessesAreKilledAtRandom) {
    constexpr int count = 100;
    std::vector<QString> entries;
    for (int i = 0; i < count; ++i) {
        const auto name = "icon" + std::to_string(i);
        const bool isPng = i % 2 == 0;
        files_.write("icons/test/48/apps/" + name + (isPng ? ".png" : ".svg"),
                     isPng ? png(300, 300, QColor(255, 0, 0)) : redSquare);
        entries.push_back(files_.write("applications/" + name + ".desktop",
                                       "[Desktop Entry]\nType=Application\nName=X\nExec=true\nIcon=" +
                                           QByteArray::fromStdString(name) + "\n"));
    }
    const LinuxApplicationIcons icons(settings(), workers_);
    std::atomic<int> right = 0;
    std::atomic<int> next = 0;
    std::atomic<int> killed = 0;
    std::vector<std::thread> threads;
    for (unsigned int thread = 0; thread < 4; ++thread) {
        threads.emplace_back([&, thread] {
            std::mt19937 random(thread);
            for (int i = next++; i < count; i = next++) {
                killed += i % 3 == 0 && killChildProcess(random) ? 1 : 0;
                right += colour(icons.image(entries[static_cast<std::size_t>(i)], 48)) == red ? 1 : 0;
            }
        });
    }
    for (auto& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(right, count);
    EXPECT_GT(killed, 0);
}

namespace {

// The commands in these files are described in FakeDecoder.cpp.
class UndecodableIconsTest : public LinuxApplicationIconsTest {
protected:
    QImage fakeDecodedImage(const QString& path, const std::string& version = "1.0") {
        auto settings = this->settings();
        settings.version = version;
        return LinuxApplicationIcons(settings, fakeWorkers_).image(path, 48);
    }
    // The number of processes started so far.
    qsizetype starts() const {
        return std::filesystem::exists(files_.at("started")) ? files_.read("started").count('\n') : 0;
    }

    IconWorkerPool fakeWorkers_{{.program = {.paths = {testProgram(u"fake_decoder"_s).toStdString()},
                                             .environment = {"FAKE_DECODER_FOLDER=" + files_.at().string()}},
                                 .limits = {.start = std::chrono::seconds(60),
                                            .picture = std::chrono::seconds(60),
                                            .end = std::chrono::seconds(60)}}};
};

} // namespace

TEST_F(UndecodableIconsTest, AnIconThatCrashesProcessesIsNotTriedAgainUntilItChanges) {
    files_.write("icons/test/48/apps/x.png", "signal 11");
    const auto entry = writeEntry("x");
    EXPECT_EQ(colour(fakeDecodedImage(entry)), none);
    const auto tries = starts();
    EXPECT_EQ(tries, 2);
    EXPECT_EQ(colour(fakeDecodedImage(entry)), none);
    EXPECT_EQ(starts(), tries);
    files_.write("icons/test/48/apps/x.png", "green");
    EXPECT_EQ(colour(fakeDecodedImage(entry)), green);
}

TEST_F(UndecodableIconsTest, AnotherVersionTriesThemAgain) {
    files_.write("icons/test/48/apps/x.png", "signal 11");
    const auto entry = writeEntry("x");
    EXPECT_EQ(colour(fakeDecodedImage(entry, "1.0")), none);
    const auto tries = starts();
    EXPECT_EQ(colour(fakeDecodedImage(entry, "1.1")), none);
    EXPECT_GT(starts(), tries);
}

TEST_F(UndecodableIconsTest, TheNextBestFileIsUsedInstead) {
    files_.write("icons/test/48/apps/x.png", "signal 11");
    files_.write("icons/test/96/apps/x.png", "green");
    const auto entry = writeEntry("x");
    EXPECT_EQ(colour(fakeDecodedImage(entry)), green);
    EXPECT_EQ(colour(fakeDecodedImage(entry)), green);
}

TEST_F(UndecodableIconsTest, AnIconWhoseProcessWasKilledFromOutsideIsTriedAgain) {
    files_.write("icons/test/48/apps/x.png", "signal 9");
    const auto entry = writeEntry("x");
    EXPECT_EQ(colour(fakeDecodedImage(entry)), none);
    const auto tries = starts();
    EXPECT_EQ(colour(fakeDecodedImage(entry)), none);
    EXPECT_GT(starts(), tries);
}

TEST_F(LinuxApplicationIconsTest, AnIconWithoutAProcessIsReportedOnce) {
    files_.write("icons/test/48/apps/x.png", png(48, 48, QColor(255, 0, 0)));
    const auto entry = writeEntry("x");
    IconWorkerPool missing({.program = {.paths = {files_.at("missing").string()}, .environment = {}}});
    LinuxApplicationIcons icons(settings(), missing);
    EXPECT_FALSE(icons.takeUnavailable());
    EXPECT_TRUE(icons.image(entry, 48).isNull());
    EXPECT_TRUE(icons.takeUnavailable());
    EXPECT_FALSE(icons.takeUnavailable());
    EXPECT_TRUE(icons.genericIcon(48).isNull());
    EXPECT_FALSE(icons.takeUnavailable()) << "there is no such file";
}

TEST_F(UndecodableIconsTest, AnIconWithoutAPictureIsNotReportedAsWithoutAProcess) {
    files_.write("icons/test/48/apps/none.png", "none");
    files_.write("icons/test/48/apps/x.png", "signal 11");
    LinuxApplicationIcons icons(settings(), fakeWorkers_);
    for (const char* const name : {"none", "x", "missing"}) {
        EXPECT_TRUE(icons.image(writeEntry(name), 48).isNull());
    }
    EXPECT_FALSE(icons.takeUnavailable());
}

TEST_F(UndecodableIconsTest, GivenUpFilesAndFallbacksAreLogged) {
    files_.write("icons/test/48/apps/x.png", "signal 11");
    files_.write("icons/test/96/apps/x.png", "green");
    files_.write("icons/test/48/apps/none.png", "none");
    const auto entry = writeEntry("x");
    const auto logOf = [this](const QString& path) {
        return debugLog("amberquill.icons", [&] { static_cast<void>(fakeDecodedImage(path)); });
    };
    const auto says = [](const std::string& log, const std::string& line) {
        return log.find(line) != std::string::npos;
    };
    const auto worst = files_.path("icons/test/48/apps/x.png").toStdString();
    const auto first = logOf(entry);
    EXPECT_PRED2(says, first, "undecodable: \"" + worst);
    EXPECT_PRED2(says, first, "next best file for \"x\"");
    const auto second = logOf(entry);
    EXPECT_PRED2(says, second, "known as undecodable: \"" + worst);
    const auto broken = logOf(writeEntry("none"));
    EXPECT_PRED2(says, broken, "no icon, or a broken one: ");
    EXPECT_PRED2(says, broken, "no picture for \"none\"");
}
