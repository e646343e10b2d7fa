#include "platform/linux/capture/wayland/WlrScreenCapture.h"

#include "MockScreencopyCompositor.h"
#include "support/WaitUntil.h"
#include "support/Watchdog.h"

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>

using namespace amberquill;
using namespace amberquill::desktop;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

using Behaviour = MockScreencopyCompositor::Behaviour;

constexpr auto longEnough = 20s;  // for an expected answer
constexpr auto impatience = 30ms; // for an answer that does not come

const ScreenArea anywhere{QRect(0, 0, 40, 30), {}};

QRgb grey(int level) {
    return qRgb(level, level, level);
}

// Captures from a compositor that does not answer.
void captureInVain(WlrScreenCapture& capture, MockScreencopyCompositor& compositor) {
    const Watchdog watchdog("a compositor that is silent is waited for", [&] { compositor.failOwed(); });
    EXPECT_TRUE(capture.capture(anywhere, 10, true).shrunk.isNull());
}

// Repeats the capture until it has requested a copy: one with a short timeout may end before.
void captureUntilAsked(WlrScreenCapture& capture, MockScreencopyCompositor& compositor) {
    ASSERT_TRUE(waitUntil([&] {
        captureInVain(capture, compositor);
        return compositor.copies() > 0;
    })) << "the compositor is never asked for a copy";
}

} // namespace

TEST(WlrScreenCapture, TheOnlyOutputIsCopied) {
    const MockScreencopyCompositor compositor({});
    WlrScreenCapture capture(compositor.socket(), longEnough);
    for (int time = 0; time < 2; ++time) {
        const ScreenPicture picture = capture.capture(anywhere, 10, true);
        ASSERT_EQ(picture.shrunk.size(), QSize(4, 3));
        ASSERT_EQ(picture.whole.size(), QSize(40, 30));
        EXPECT_EQ(picture.shrunk.pixel(3, 2), grey(10));
        EXPECT_EQ(picture.whole.pixel(39, 29), grey(10));
    }
    EXPECT_EQ(compositor.copies(), 2);
    EXPECT_TRUE(capture.capture(anywhere, 10, false).whole.isNull());
}

TEST(WlrScreenCapture, OfSeveralOutputsTheCompositorsChoiceIsCopied) {
    MockScreencopyCompositor compositor({.outputs = 3, .chosen = 1});
    WlrScreenCapture capture(compositor.socket(), longEnough);
    EXPECT_EQ(capture.capture(anywhere, 10, false).shrunk.pixel(0, 0), grey(20));
    compositor.setChosen(2);
    EXPECT_EQ(capture.capture(anywhere, 10, false).shrunk.pixel(0, 0), grey(30));
}

TEST(WlrScreenCapture, AnOutputIsFoundByItsName) {
    const MockScreencopyCompositor compositor({.outputs = 3});
    WlrScreenCapture capture(compositor.socket(), longEnough);
    EXPECT_EQ(capture.capture({anywhere.pixels, u"OUT-2"_s}, 10, false).shrunk.pixel(0, 0), grey(30));
    EXPECT_TRUE(capture.capture({anywhere.pixels, u"OUT-9"_s}, 10, false).shrunk.isNull());
}

TEST(WlrScreenCapture, AnUnknownChoiceOfOutputIsNotGuessed) {
    const MockScreencopyCompositor compositor({.outputs = 2, .offersLayers = false});
    WlrScreenCapture capture(compositor.socket(), longEnough);
    EXPECT_TRUE(capture.capture(anywhere, 10, true).shrunk.isNull());
    EXPECT_EQ(compositor.copies(), 0);
}

TEST(WlrScreenCapture, WithoutTheProtocolACaptureFailsAtOnce) {
    const MockScreencopyCompositor compositor({.offersCopies = false});
    WlrScreenCapture capture(compositor.socket(), longEnough);
    EXPECT_TRUE(capture.capture(anywhere, 10, true).shrunk.isNull());
}

TEST(WlrScreenCapture, WithoutACompositorACaptureIsNull) {
    WlrScreenCapture capture("/nonexistent/wayland", longEnough);
    EXPECT_TRUE(capture.capture(anywhere, 10, true).shrunk.isNull());
}

TEST(WlrScreenCapture, AnEmptyAreaIsNotCaptured) {
    const MockScreencopyCompositor compositor({});
    WlrScreenCapture capture(compositor.socket(), longEnough);
    EXPECT_TRUE(capture.capture({}, 10, true).shrunk.isNull());
    EXPECT_TRUE(capture.capture(anywhere, 0, true).shrunk.isNull());
    EXPECT_TRUE(capture.capture(anywhere, 257, true).shrunk.isNull());
}

TEST(WlrScreenCapture, AFailedCopyIsNullAndMayBeTriedAgain) {
    const MockScreencopyCompositor compositor({.fails = true});
    WlrScreenCapture capture(compositor.socket(), longEnough);
    for (int time = 1; time <= 2; ++time) {
        EXPECT_TRUE(capture.capture(anywhere, 10, true).shrunk.isNull());
        EXPECT_EQ(compositor.copies(), time);
    }
}

TEST(WlrScreenCapture, InvalidLayoutsAreRefused) {
    for (const Behaviour& behaviour :
         {Behaviour{.stride = 4}, Behaviour{.width = 0}, Behaviour{.height = 0xFFFFFFFF},
          Behaviour{.width = 0x7FFFFFFF, .stride = 0xFFFFFFFC}, Behaviour{.format = 0x12345678},
          Behaviour{.width = 16384, .height = 16384, .stride = 65536}}) {
        const MockScreencopyCompositor compositor(behaviour);
        WlrScreenCapture capture(compositor.socket(), longEnough);
        EXPECT_TRUE(capture.capture(anywhere, 10, true).shrunk.isNull());
        EXPECT_TRUE(capture.capture(anywhere, 10, true).shrunk.isNull()) << "and nothing is owed";
        EXPECT_EQ(compositor.copies(), 2);
    }
}

TEST(WlrScreenCapture, ASilentCompositorIsWaitedForOnce) {
    for (const bool proposes : {false, true}) {
        MockScreencopyCompositor compositor({.proposes = proposes, .finishes = false});
        WlrScreenCapture capture(compositor.socket(), impatience);
        captureUntilAsked(capture, compositor);
        for (int time = 0; time < 3; ++time) {
            captureInVain(capture, compositor);
        }
        EXPECT_EQ(compositor.copies(), 1);
    }
}

TEST(WlrScreenCapture, TheLastPictureReplacesOneThatDoesNotCome) {
    MockScreencopyCompositor compositor({});
    WlrScreenCapture capture(compositor.socket(), impatience);
    ASSERT_TRUE(waitUntil([&] { return !capture.capture(anywhere, 10, true).shrunk.isNull(); }));
    const int copies = compositor.copies();
    compositor.setFinishes(false);
    const Watchdog watchdog("a compositor that is silent is waited for", [&] { compositor.failOwed(); });
    while (compositor.copies() == copies) { // a capture with a short timeout may end before
        const ScreenPicture picture = capture.capture(anywhere, 10, true);
        ASSERT_EQ(picture.shrunk.size(), QSize(4, 3));
        ASSERT_EQ(picture.whole.size(), QSize(40, 30));
        EXPECT_EQ(picture.shrunk.pixel(3, 2), grey(10));
        EXPECT_EQ(picture.whole.pixel(39, 29), grey(10));
    }
    const ScreenArea another{QRect(0, 0, 40, 30), u"another"_s};
    EXPECT_TRUE(capture.capture(another, 10, true).shrunk.isNull()) << "of which there is none";
}

TEST(WlrScreenCapture, AfterALateAnswerTheCompositorIsAskedAgain) {
    MockScreencopyCompositor compositor({.finishes = false});
    WlrScreenCapture capture(compositor.socket(), impatience);
    captureUntilAsked(capture, compositor);
    compositor.setFinishes(true);
    compositor.failOwed();
    ScreenPicture picture;
    ASSERT_TRUE(waitUntil([&] {
        picture = capture.capture(anywhere, 10, true);
        return !picture.shrunk.isNull();
    })) << "it is not asked again";
    EXPECT_EQ(picture.shrunk.pixel(0, 0), grey(10));
}

TEST(WlrScreenCapture, AnUnansweredSocketIsNotWaitedForLong) {
    const int listening = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const MockScreencopyCompositor folder({}); // for the socket's folder
    const QByteArray path = folder.socket() + "-mute";
    std::copy(path.begin(), path.end(), std::begin(address.sun_path));
    ASSERT_EQ(::bind(listening, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    ASSERT_EQ(::listen(listening, 1), 0);
    WlrScreenCapture capture(path, impatience);
    {
        // Closes the connection that was not accepted yet.
        const Watchdog watchdog("a socket that nobody answers is waited for",
                                [&] { ::close(::accept(listening, nullptr, nullptr)); });
        EXPECT_TRUE(capture.capture(anywhere, 10, true).shrunk.isNull());
    }
    ::close(listening);
}

TEST(WlrScreenCapture, ACompositorThatExitsLeavesNoPicture) {
    auto compositor = std::make_unique<MockScreencopyCompositor>(Behaviour{});
    WlrScreenCapture capture(compositor->socket(), longEnough);
    EXPECT_FALSE(capture.capture(anywhere, 10, true).shrunk.isNull());
    compositor.reset();
    EXPECT_TRUE(capture.capture(anywhere, 10, true).shrunk.isNull());
}
