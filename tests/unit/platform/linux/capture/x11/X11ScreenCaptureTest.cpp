// On real X servers, which the tests start.
#include "platform/linux/capture/x11/X11ScreenCapture.h"

#include "platform/linux/capture/x11/RootReader.h"
#include "platform/linux/x11/XcbReply.h"
#include "support/TestXServer.h"
#include "support/WaitUntil.h"
#include "support/Watchdog.h"

#include <QElapsedTimer>
#include <QProcess>
#include <array>
#include <chrono>
#include <gtest/gtest.h>
#include <string_view>

using namespace amberquill;
using namespace amberquill::desktop;
using namespace Qt::StringLiterals;

namespace {

// Far longer than a capture takes on a busy machine.
constexpr std::chrono::milliseconds longEnough{20'000};
constexpr CapturePatience patient{longEnough, longEnough, longEnough};

// A server with windows of plain colours.
class Desktop {
public:
    explicit Desktop(const QString& screen = u"640x480x24"_s, const QStringList& options = {})
        : server_(screen, options)
        , client_(server_) {}

    // Shows an override-redirect window and waits until it is on the screen. `pixel` has the server's format.
    xcb_window_t show(const QRect& area, std::uint32_t pixel) {
        const auto window = xcb_generate_id(client_.get());
        const std::array<std::uint32_t, 2> values{pixel, 1};
        xcb_create_window(client_.get(), XCB_COPY_FROM_PARENT, window, client_.screen().root,
                          static_cast<std::int16_t>(area.x()), static_cast<std::int16_t>(area.y()),
                          static_cast<std::uint16_t>(area.width()), static_cast<std::uint16_t>(area.height()),
                          0, XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                          XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT, values.data());
        xcb_map_window(client_.get(), window);
        client_.sync();
        return window;
    }

    void hide(xcb_window_t window) {
        xcb_unmap_window(client_.get(), window);
        client_.sync();
    }

    // The window is half transparent under a compositing manager.
    void makeTranslucent(xcb_window_t window) {
        constexpr std::string_view name = "_NET_WM_WINDOW_OPACITY";
        const XcbReply<xcb_intern_atom_reply_t> atom(xcb_intern_atom_reply(
            client_.get(), xcb_intern_atom(client_.get(), 0, name.size(), name.data()), nullptr));
        const std::uint32_t half = 0x80000000;
        xcb_change_property(client_.get(), XCB_PROP_MODE_REPLACE, window, atom->atom, XCB_ATOM_CARDINAL, 32,
                            1, &half);
        client_.sync();
    }

    // Sets a pixmap of that colour as the root pixmap, like programs that draw the wallpaper.
    void paintWallpaper(const QSize& size, std::uint32_t pixel) {
        const auto pixmap = xcb_generate_id(client_.get());
        const auto context = xcb_generate_id(client_.get());
        xcb_create_pixmap(client_.get(), client_.screen().root_depth, pixmap, client_.screen().root,
                          static_cast<std::uint16_t>(size.width()),
                          static_cast<std::uint16_t>(size.height()));
        xcb_create_gc(client_.get(), context, pixmap, XCB_GC_FOREGROUND, &pixel);
        const xcb_rectangle_t all{0, 0, static_cast<std::uint16_t>(size.width()),
                                  static_cast<std::uint16_t>(size.height())};
        xcb_poly_fill_rectangle(client_.get(), pixmap, context, 1, &all);
        nameWallpaper(pixmap);
    }

    // Names this pixmap in the root window's property.
    void nameWallpaper(xcb_pixmap_t pixmap) {
        constexpr std::string_view name = "_XROOTPMAP_ID";
        const XcbReply<xcb_intern_atom_reply_t> atom(xcb_intern_atom_reply(
            client_.get(), xcb_intern_atom(client_.get(), 0, name.size(), name.data()), nullptr));
        xcb_change_property(client_.get(), XCB_PROP_MODE_REPLACE, client_.screen().root, atom->atom,
                            XCB_ATOM_PIXMAP, 32, 1, &pixmap);
        client_.sync();
    }

    TestXServer& server() { return server_; }
    XClient& client() { return client_; }

private:
    TestXServer server_;
    XClient client_;
};

// Captures an area of the screen, made smaller.
QImage seen(ScreenCapture& capture, const QRect& area, int shrink) {
    return capture.capture({area}, shrink, false).shrunk;
}

// The colour at a point of the screen, by a capture of a single pixel.
QRgb seenAt(ScreenCapture& capture, const QPoint& point) {
    const QImage image = seen(capture, {point, QSize(1, 1)}, 1);
    EXPECT_FALSE(image.isNull());
    return image.isNull() ? 0 : image.pixel(0, 0);
}

// A compositing manager: it draws the whole screen itself.
class Compositor {
public:
    explicit Compositor(const TestXServer& server) {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"DISPLAY"_s, QString::fromLatin1(server.display()));
        process_.setProcessEnvironment(environment);
        process_.start(u"picom"_s, {u"--backend"_s, u"xrender"_s, u"--config"_s, u"/dev/null"_s,
                                    u"--no-fading-openclose"_s});
        EXPECT_TRUE(process_.waitForStarted());
    }
    Compositor(const Compositor&) = delete;
    Compositor& operator=(const Compositor&) = delete;
    ~Compositor() {
        process_.kill();
        process_.waitForFinished();
    }

private:
    QProcess process_;
};

// Repeats captures until a point has about that colour. False: after ten seconds it has not.
bool becomes(ScreenCapture& capture, const QPoint& point, int grey) {
    return waitUntil([&] {
        const QRgb colour = seenAt(capture, point);
        return std::abs(qRed(colour) - grey) <= 2 && qRed(colour) == qBlue(colour);
    });
}

// Checks captures of red above green by each way of reading.
void expectRedAndGreen(const QString& screen, std::uint32_t red, std::uint32_t green) {
    Desktop desktop(screen);
    desktop.show({0, 0, 100, 60}, red);
    desktop.show({0, 60, 100, 60}, green);
    for (const bool shared : {true, false}) {
        X11ScreenCapture capture(desktop.server().display(), patient);
        if (!shared) {
            capture.shareNoMemory();
        }
        const QImage image = seen(capture, {0, 0, 100, 120}, 20);
        ASSERT_EQ(image.size(), QSize(5, 6)) << screen.toStdString();
        for (int x = 0; x < 5; ++x) {
            EXPECT_EQ(image.pixel(x, 0), 0xFFFF0000);
            EXPECT_EQ(image.pixel(x, 2), 0xFFFF0000);
            EXPECT_EQ(image.pixel(x, 3), 0xFF00FF00);
            EXPECT_EQ(image.pixel(x, 5), 0xFF00FF00);
        }
    }
}

} // namespace

TEST(X11ScreenCapture, ACaptureShowsTheScreenWithItsWindows) {
    Desktop desktop;
    desktop.show({0, 0, 640, 480}, 0x102030);
    const auto window = desktop.show({100, 50, 200, 100}, 0xFF8000);
    X11ScreenCapture capture(desktop.server().display(), patient);
    const QImage image = seen(capture, {0, 0, 640, 480}, 1);
    ASSERT_EQ(image.size(), QSize(640, 480));
    EXPECT_EQ(image.pixel(99, 50), 0xFF102030);
    EXPECT_EQ(image.pixel(100, 50), 0xFFFF8000);
    EXPECT_EQ(image.pixel(299, 149), 0xFFFF8000);
    EXPECT_EQ(image.pixel(300, 149), 0xFF102030);
    EXPECT_EQ(image.pixel(639, 479), 0xFF102030);
    desktop.hide(window);
    EXPECT_EQ(seenAt(capture, {100, 50}), 0xFF102030) << "as it is now";
}

TEST(X11ScreenCapture, PixelsAreMeansOfBlocks) {
    Desktop desktop;
    desktop.show({0, 0, 640, 480}, 0x000000);
    desktop.show({4, 0, 4, 8}, 0xFFFFFF);
    X11ScreenCapture capture(desktop.server().display(), patient);
    const QImage image = seen(capture, {0, 0, 20, 12}, 8);
    ASSERT_EQ(image.size(), QSize(3, 2));
    EXPECT_EQ(image.pixel(0, 0), 0xFF808080);
    EXPECT_EQ(image.pixel(1, 0), 0xFF000000);
    EXPECT_EQ(image.pixel(0, 1), 0xFF000000);
}

TEST(X11ScreenCapture, OneOfSeveralScreensIsReadAlone) {
    Desktop desktop(u"1200x400x24"_s);
    desktop.show({0, 0, 600, 400}, 0xFF0000);
    desktop.show({600, 0, 600, 400}, 0x0000FF);
    X11ScreenCapture capture(desktop.server().display(), patient);
    const QImage left = seen(capture, {0, 0, 600, 400}, 100);
    const QImage right = seen(capture, {600, 0, 600, 400}, 100);
    ASSERT_EQ(left.size(), QSize(6, 4));
    ASSERT_EQ(right.size(), QSize(6, 4));
    EXPECT_EQ(left.pixel(5, 3), 0xFFFF0000);
    EXPECT_EQ(right.pixel(0, 0), 0xFF0000FF);
}

TEST(X11ScreenCapture, AnAreaIsCutToTheServersScreen) {
    Desktop desktop;
    desktop.show({0, 0, 640, 480}, 0x00FF00);
    X11ScreenCapture capture(desktop.server().display(), patient);
    const QImage image = seen(capture, {600, 470, 100, 100}, 1);
    ASSERT_EQ(image.size(), QSize(40, 10));
    EXPECT_EQ(image.pixel(39, 9), 0xFF00FF00);
    EXPECT_TRUE(seen(capture, {700, 0, 100, 100}, 1).isNull());
    EXPECT_TRUE(seen(capture, {-200, -200, 100, 100}, 1).isNull());
    EXPECT_TRUE(seen(capture, {}, 1).isNull());
    EXPECT_TRUE(seen(capture, {0, 0, 10, 10}, 0).isNull());
    EXPECT_TRUE(seen(capture, {0, 0, 10, 10}, 1000).isNull());
    EXPECT_EQ(seenAt(capture, {0, 0}), 0xFF00FF00) << "and the next one is well again";
}

TEST(X11ScreenCapture, ALargeScreenIsReadInStripsWithoutASeam) {
    Desktop desktop(u"3840x2160x24"_s);
    desktop.show({0, 0, 3840, 2160}, 0x203040);
    for (int y = 0; y < 2160; y += 2) {
        desktop.show({0, y, 3840, 1}, static_cast<std::uint32_t>(y / 10));
    }
    for (const bool shared : {true, false}) {
        X11ScreenCapture capture(desktop.server().display(), patient);
        if (!shared) {
            capture.shareNoMemory();
        }
        const QImage image = seen(capture, {0, 0, 3840, 2160}, 1);
        ASSERT_EQ(image.size(), QSize(3840, 2160));
        int wrong = 0;
        for (int y = 0; y < 2160; ++y) {
            const QRgb expected = 0xFF000000 | (y % 2 == 0 ? static_cast<QRgb>(y / 10) : 0x203040);
            wrong += image.pixel(0, y) != expected || image.pixel(3839, y) != expected ? 1 : 0;
        }
        EXPECT_EQ(wrong, 0);
    }
}

TEST(X11ScreenCapture, TrueColourScreensOfEveryDepthAreRead) {
    expectRedAndGreen(u"640x480x15"_s, 0x7C00, 0x03E0);
    expectRedAndGreen(u"640x480x16"_s, 0xF800, 0x07E0);
    expectRedAndGreen(u"640x480x24"_s, 0xFF0000, 0x00FF00);
    expectRedAndGreen(u"640x480x30"_s, 0x3FF00000, 0x000FFC00);
}

TEST(X11ScreenCapture, AScreenWithAPaletteIsNotRead) {
    Desktop desktop(u"640x480x8"_s);
    X11ScreenCapture capture(desktop.server().display(), patient);
    EXPECT_TRUE(seen(capture, {0, 0, 640, 480}, 8).isNull());
}

TEST(X11ScreenCapture, AServerWithoutSharedMemoryIsReadOverTheSocket) {
    Desktop desktop(u"640x480x24"_s, {u"-extension"_s, u"MIT-SHM"_s});
    desktop.show({0, 0, 640, 480}, 0xFF8000);
    X11ScreenCapture capture(desktop.server().display(), patient);
    const QImage image = seen(capture, {0, 0, 640, 480}, 8);
    ASSERT_EQ(image.size(), QSize(80, 60));
    EXPECT_EQ(image.pixel(79, 59), 0xFFFF8000);
}

TEST(X11ScreenCapture, ARemoteServerIsNotRead) {
    // Over TCP, like forwarded connections.
    TestXServer server(u"640x480x24"_s, {u"-listen"_s, u"tcp"_s, u"-ac"_s});
    X11ScreenCapture near(server.display(), patient);
    EXPECT_FALSE(seen(near, {0, 0, 64, 64}, 8).isNull());
    X11ScreenCapture far("127.0.0.1" + server.display(), patient);
    EXPECT_TRUE(seen(far, {0, 0, 64, 64}, 8).isNull());
}

TEST(X11ScreenCapture, AMissingServerIsNotRead) {
    X11ScreenCapture capture(":54321", patient);
    EXPECT_TRUE(seen(capture, {0, 0, 64, 64}, 8).isNull());
    EXPECT_TRUE(seen(capture, {0, 0, 64, 64}, 8).isNull());
}

TEST(X11ScreenCapture, AServerThatExitedIsNotRead) {
    Desktop desktop;
    X11ScreenCapture capture(desktop.server().display(), patient);
    EXPECT_FALSE(seen(capture, {0, 0, 64, 64}, 8).isNull());
    desktop.server().stop();
    EXPECT_TRUE(seen(capture, {0, 0, 64, 64}, 8).isNull());
    EXPECT_TRUE(seen(capture, {0, 0, 64, 64}, 8).isNull());
}

TEST(X11ScreenCapture, AHangingServerIsNotWaitedForAndTheLastPictureIsUsed) {
    Desktop desktop;
    desktop.show({0, 0, 640, 480}, 0xFF8000);
    constexpr std::chrono::milliseconds patience{100};
    X11ScreenCapture capture(desktop.server().display(), {patience, patience, patience});
    const ScreenArea area{QRect(0, 0, 640, 480)};
    QImage image;
    const auto isSeen = [&] {
        image = capture.capture(area, 8, false).shrunk;
        return !image.isNull();
    };
    ASSERT_TRUE(waitUntil(isSeen)) << "the screen is not read"; // a busy machine may time out
    const QImage last = image;
    desktop.show({0, 0, 640, 480}, 0x0080FF);
    xcb_grab_server(desktop.client().get());
    desktop.client().sync();
    {
        const Watchdog watchdog("a server that hangs is waited for", [&desktop] {
            xcb_ungrab_server(desktop.client().get());
            desktop.client().sync();
        });
        QElapsedTimer elapsed;
        elapsed.start();
        ASSERT_TRUE(isSeen());
        EXPECT_GE(elapsed.elapsed(), patience.count() - 1);
        EXPECT_EQ(image, last);
        ASSERT_TRUE(isSeen()) << "it still owes the first answer";
        EXPECT_EQ(image, last);
        const ScreenPicture picture = capture.capture(area, 8, true);
        ASSERT_EQ(picture.whole.size(), area.pixels.size());
        EXPECT_EQ(picture.whole.pixel(639, 479), 0xFFFF8000);
        EXPECT_TRUE(seen(capture, {0, 0, 320, 480}, 8).isNull()) << "of which there is none";
    }
    xcb_ungrab_server(desktop.client().get());
    desktop.client().sync();
    const auto isNew = [&] { return isSeen() && image.pixel(79, 59) == 0xFF0080FF; };
    EXPECT_TRUE(waitUntil(isNew)) << "once it answers, it is read again";
}

TEST(RootReader, TheRootPixmapIsReadUnderTheWindows) {
    for (const QSize size : {QSize(640, 480), QSize(16, 16)}) { // small ones are repeated
        Desktop desktop;
        desktop.paintWallpaper(size, 0x204060);
        desktop.show({0, 0, 640, 480}, 0xFFFFFF);
        RootReader reader(desktop.server().display());
        const QImage picture = reader.wallpaper({0, 0, 640, 480}, longEnough);
        ASSERT_FALSE(picture.isNull());
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x) {
                ASSERT_EQ(picture.pixel(x, y), 0xFF204060);
            }
        }
    }
}

TEST(RootReader, AnInvalidRootPixmapIsIgnored) {
    Desktop desktop;
    RootReader reader(desktop.server().display());
    EXPECT_TRUE(reader.wallpaper({0, 0, 640, 480}, longEnough).isNull()) << "nobody has painted one";
    desktop.nameWallpaper(0x7FFFFF);
    EXPECT_TRUE(reader.wallpaper({0, 0, 640, 480}, longEnough).isNull()) << "it has gone";
    desktop.paintWallpaper({640, 480}, 0x204060);
    EXPECT_FALSE(reader.wallpaper({0, 0, 640, 480}, longEnough).isNull()) << "and nothing is owed";
}

// For any number of rows that are read in time.
TEST(X11ScreenCapture, APartlyReadScreenHasNoBlackRows) {
    Desktop desktop(u"3840x2160x24"_s);
    desktop.paintWallpaper({3840, 2160}, 0xFF8000);
    desktop.show({0, 0, 3840, 2160}, 0xFF8000);
    for (int milliseconds = 0; milliseconds < 24; milliseconds += 2) {
        const std::chrono::milliseconds time(milliseconds);
        X11ScreenCapture capture(desktop.server().display(), {time, time, longEnough});
        const ScreenPicture picture = capture.capture({QRect(0, 0, 3840, 2160)}, 8, true);
        ASSERT_EQ(picture.shrunk.size(), QSize(480, 270));
        ASSERT_EQ(picture.whole.size(), QSize(3840, 2160));
        int wrong = 0;
        for (int y = 0; y < 2160; ++y) {
            wrong += picture.whole.pixel(1000, y) != 0xFFFF8000 ? 1 : 0;
            wrong += picture.shrunk.pixel(200, y / 8) != 0xFFFF8000 ? 1 : 0;
        }
        EXPECT_EQ(wrong, 0) << milliseconds;
    }
}

TEST(X11ScreenCapture, ACaptureShowsTheCompositingManagersOutput) {
    Desktop desktop;
    desktop.show({0, 0, 640, 480}, 0x202020);
    const auto window = desktop.show({100, 100, 200, 200}, 0xE0E0E0);
    desktop.makeTranslucent(window);
    X11ScreenCapture capture(desktop.server().display(), patient);
    EXPECT_EQ(seenAt(capture, {150, 150}), 0xFFE0E0E0) << "nobody sees to it yet";
    {
        const Compositor compositor(desktop.server());
        EXPECT_TRUE(becomes(capture, {150, 150}, 0x80));
        EXPECT_EQ(seenAt(capture, {50, 50}), 0xFF202020);
        // From now on a capture shows one of the two pictures and finally the new one, never black or a
        // mixture.
        desktop.hide(window);
        const auto hasGone = [&capture] {
            const QRgb colour = seenAt(capture, {150, 150});
            EXPECT_TRUE(colour == 0xFF202020 || std::abs(qRed(colour) - 0x80) <= 2) << std::hex << colour;
            return colour == 0xFF202020;
        };
        EXPECT_TRUE(waitUntil(hasGone)) << "the window is seen although it has gone";
    }
    desktop.show({100, 100, 200, 200}, 0xE0E0E0);
    EXPECT_TRUE(becomes(capture, {150, 150}, 0xE0)) << "and once it has gone, without it";
}
