#include "StartedDecoder.h"

#include "platform/linux/decoder/process/Sandbox.h"
#include "support/BadIcons.h"

#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <filesystem>
#include <map>
#include <memory>
#include <sys/resource.h>

using namespace amberquill;
using namespace amberquill::desktop;
using namespace std::chrono_literals;

namespace {

const QByteArray blueSquare = svg(R"(<rect width="100" height="100" fill="#0000ff"/>)");

const QByteArray redSquareWithText =
    svg(R"(<rect width="100" height="100" fill="#ff0000"/><text x="10" y="90" font-size="90">M</text>)");

int blackPixels(const QImage& image) {
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            count += image.pixelColor(x, y) == QColor(Qt::black) ? 1 : 0;
        }
    }
    return count;
}

// On a kernel without one of the system calls.
std::vector<std::string> withoutCall(const std::string& call, std::vector<std::string> arguments = {}) {
    arguments.insert(arguments.begin(), {call, testProgram(decoderProgram).toStdString()});
    return arguments;
}

// A field of /proc/PID/status.
std::string statusEntry(pid_t process, const std::string& name) {
    QFile file(QStringLiteral("/proc/%1/status").arg(process));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    const QRegularExpression line(QStringLiteral("^%1:\\s*(.*)$").arg(QString::fromStdString(name)),
                                  QRegularExpression::MultilineOption);
    return line.match(QString::fromUtf8(file.readAll())).captured(1).toStdString();
}

// The target of each descriptor of a process.
std::map<int, std::string> descriptorsOf(pid_t process) {
    std::map<int, std::string> descriptors;
    for (const auto& entry :
         std::filesystem::directory_iterator("/proc/" + std::to_string(process) + "/fd")) {
        descriptors[std::stoi(entry.path().filename())] = std::filesystem::read_symlink(entry.path());
    }
    return descriptors;
}

} // namespace

TEST(IconDecoderProcess, PicturesAreDecoded) {
    StartedDecoder decoder;
    ASSERT_TRUE(decoder.isReady());
    const auto fromPng = decoder.decoded(png(32, 32), 48);
    ASSERT_EQ(fromPng.size(), QSize(48, 48));
    EXPECT_EQ(fromPng.pixelColor(24, 24), QColor(Qt::red));
    const auto fromSvg = decoder.decoded(blueSquare, 40);
    ASSERT_EQ(fromSvg.size(), QSize(40, 40));
    EXPECT_EQ(fromSvg.pixelColor(0, 39), QColor(Qt::blue));
    EXPECT_EQ(fromSvg.pixelColor(39, 0), QColor(Qt::blue));
}

TEST(IconDecoderProcess, AFileThatIsNotAnIconGivesNoPicture) {
    StartedDecoder decoder;
    ASSERT_TRUE(decoder.isReady());
    ASSERT_TRUE(decoder.ask("no picture", 48));
    EXPECT_EQ(decoder.answer(), (DecodingAnswer{DecodingOutcome::NoPicture, 48, false}));
    EXPECT_FALSE(decoder.decoded(png(8, 8), 48).isNull());
}

TEST(IconDecoderProcess, TextIsDrawnWithFontsAndRefusedWithout) {
    StartedDecoder plain;
    ASSERT_TRUE(plain.isReady());
    ASSERT_TRUE(plain.ask(redSquareWithText, 64));
    EXPECT_EQ(plain.answer(), (DecodingAnswer{DecodingOutcome::NeedsFonts, 64, false}));

    StartedDecoder withFonts(decoderProgram, {decoderFontsArgument});
    ASSERT_TRUE(withFonts.isReady());
    EXPECT_EQ(blackPixels(withFonts.decoded(redSquare, 64)), 0);
    EXPECT_GT(blackPixels(withFonts.decoded(redSquareWithText, 64)), 100);
    EXPECT_EQ(statusEntry(withFonts.process(), "Seccomp"), "2");
    EXPECT_EQ(descriptorsOf(withFonts.process()).size(), 3U);
}

TEST(IconDecoderProcess, WithoutLandlockItLeavesOutText) {
    StartedDecoder decoder(QStringLiteral("refused_call"),
                           withoutCall("landlock_create_ruleset", {decoderFontsArgument}));
    ASSERT_TRUE(decoder.isReady());
    const auto picture = decoder.decoded(redSquareWithText, 64);
    EXPECT_EQ(picture.pixelColor(1, 1), QColor(Qt::red));
    EXPECT_EQ(blackPixels(picture), 0);
}

TEST(IconDecoderProcess, WithoutCloseRangeItClosesDescriptors) {
    StartedDecoder decoder(QStringLiteral("refused_call"), withoutCall("close_range"));
    ASSERT_TRUE(decoder.isReady());
    EXPECT_EQ(descriptorsOf(decoder.process()).size(), 3U);
    EXPECT_FALSE(decoder.decoded(png(32, 32), 48).isNull());
}

TEST(IconDecoderProcess, WithoutAnotherPartOfTheSandboxItDoesNotServe) {
    std::vector<std::string> calls{"seccomp"};
#ifndef AMBERQUILL_SANITIZED // sanitizers need it to start
    calls.emplace_back("prlimit64");
#endif
    for (const auto& call : calls) {
        StartedDecoder decoder(QStringLiteral("refused_call"), withoutCall(call));
        EXPECT_FALSE(decoder.isReady()) << call;
        EXPECT_EQ(decoder.exit(), DecoderExit::NoSandbox) << call;
    }
}

TEST(IconDecoderProcess, TheSandboxIsCompleteBeforeTheFirstRequest) {
    StartedDecoder decoder;
    ASSERT_TRUE(decoder.isReady());
    EXPECT_EQ(statusEntry(decoder.process(), "Seccomp"), "2");
    EXPECT_EQ(statusEntry(decoder.process(), "NoNewPrivs"), "1");
#ifndef AMBERQUILL_SANITIZED // sanitizers have a thread of their own
    // The thread that waits for the launcher's end. Others would have started before Landlock's rules.
    EXPECT_EQ(statusEntry(decoder.process(), "Threads"), "2");
#endif
}

TEST(IconDecoderProcess, ItHasOnlyTheSocketAndTwoNullOutputs) {
    StartedDecoder decoder;
    ASSERT_TRUE(decoder.isReady());
    const auto before = descriptorsOf(decoder.process());
    ASSERT_EQ(before.size(), 3U);
    EXPECT_TRUE(before.at(decoderSocket).starts_with("socket:"));
    EXPECT_EQ(before.at(STDOUT_FILENO), "/dev/null");
    EXPECT_EQ(before.at(STDERR_FILENO), "/dev/null");
    // Qt converts the second one on a thread.
    EXPECT_FALSE(decoder.decoded(png(32, 32), 48).isNull());
    EXPECT_FALSE(decoder.decoded(png(1000, 1000), 48).isNull());
    EXPECT_FALSE(decoder.decoded(blueSquare, 48).isNull());
    EXPECT_EQ(descriptorsOf(decoder.process()), before);
}

TEST(IconDecoderProcess, SignalsEndItEvenIfTheLauncherIgnoresThem) {
    sigset_t blocked = {};
    sigset_t before = {};
    ::sigaddset(&blocked, SIGPROF);
    ::sigaddset(&blocked, SIGTERM);
    ::pthread_sigmask(SIG_BLOCK, &blocked, &before);
    ::signal(SIGPROF, SIG_IGN);
    StartedDecoder decoder;
    ::signal(SIGPROF, SIG_DFL);
    ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
    ASSERT_TRUE(decoder.isReady());
    const auto signals = [&decoder](const char* name) {
        return std::stoul(statusEntry(decoder.process(), name), nullptr, 16);
    };
    EXPECT_EQ(signals("SigIgn") & (1UL << (SIGPROF - 1)), 0U);
    EXPECT_EQ(signals("SigBlk"), 0U);
}

TEST(IconDecoderProcess, ItHasResourceLimits) {
    StartedDecoder decoder;
    ASSERT_TRUE(decoder.isReady());
    const auto limit = [&decoder](__rlimit_resource resource) {
        rlimit limits = {};
        EXPECT_EQ(::prlimit(decoder.process(), resource, nullptr, &limits), 0);
        return std::pair(limits.rlim_cur, limits.rlim_max);
    };
    const auto both = [](rlim_t most) { return std::pair(most, most); };
    EXPECT_EQ(limit(RLIMIT_CORE), both(0));
    EXPECT_EQ(limit(RLIMIT_FSIZE), both(0));
    EXPECT_EQ(limit(RLIMIT_NOFILE), both(16));
    // The soft limit's signal comes first.
    EXPECT_EQ(limit(RLIMIT_CPU), std::pair(rlim_t{20}, rlim_t{21}));
#ifndef AMBERQUILL_SANITIZED
    EXPECT_EQ(limit(RLIMIT_AS), both(static_cast<rlim_t>(decoderMemory)));
#endif
}

TEST(IconDecoderProcess, ItHasTheHighestOutOfMemoryScore) {
    StartedDecoder decoder;
    ASSERT_TRUE(decoder.isReady());
    QFile file(QStringLiteral("/proc/%1/oom_score_adj").arg(decoder.process()));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), "1000\n");
}

TEST(IconDecoderProcess, ItEndsWithTheLauncher) {
    StartedDecoder decoder;
    ASSERT_TRUE(decoder.isReady());
    decoder.hangUp();
    EXPECT_EQ(decoder.exit(), DecoderExit::Done);
}

TEST(IconDecoderProcess, ItEndsWithTheLauncherWhileItDecodes) {
    TemporaryTree folder;
    StartedDecoder busy(QStringLiteral("sandbox_probe"),
                        {"confined", "work without end", folder.path().toStdString()});
    ASSERT_TRUE(busy.isReady());
    ASSERT_TRUE(busy.ask("file", 8));
    busy.hangUp();
    EXPECT_EQ(busy.exit(), DecoderExit::Done);
}

TEST(IconDecoderProcess, AnInvalidRequestEndsIt) {
    StartedDecoder decoder;
    ASSERT_TRUE(decoder.isReady());
    ASSERT_TRUE(sendMessage(decoder.socket(), std::array<std::byte, 1>{}));
    EXPECT_FALSE(decoder.answer());
    EXPECT_EQ(decoder.exit(), DecoderExit::InvalidRequest);
}

TEST(IconDecoderProcess, StartedByHandItPrintsItsPurpose) {
    QProcess process;
    process.setStandardInputFile(QProcess::nullDevice());
    process.start(testProgram(decoderProgram), {});
    ASSERT_TRUE(process.waitForFinished());
    EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(process.exitCode(), static_cast<int>(DecoderExit::NotFromLauncher));
    EXPECT_TRUE(process.readAllStandardError().contains("amberquill, which starts it"));
}

TEST(IconDecoderProcess, MemoryOfLargePicturesIsReturned) {
#ifdef AMBERQUILL_SANITIZED
    GTEST_SKIP() << "sanitizers keep memory";
#endif
    StartedDecoder decoder;
    ASSERT_TRUE(decoder.isReady());
    // All libraries are loaded by now.
    EXPECT_FALSE(decoder.decoded(png(600, 600), 64).isNull());
    const auto kilobytes = [&decoder] { return std::stol(statusEntry(decoder.process(), "RssAnon")); };
    const long before = kilobytes();
    // By default the heap keeps blocks up to the size of the largest freed one.
    constexpr long keptAtMost = 10 * 1024; // pictures have 16 MB and more
    for (const int edge : {2500, 2400, 2300, 2000}) {
        EXPECT_FALSE(decoder.decoded(png(edge, edge), 512).isNull());
        EXPECT_LT(kilobytes(), before + keptAtMost) << edge;
    }
}

TEST(IconDecoderProcess, TheLargestAllowedPictureIsDecodedWithinTheMemoryLimit) {
    StartedDecoder decoder;
    ASSERT_TRUE(decoder.isReady());
    EXPECT_FALSE(decoder.decoded(png(5'792, 5'792), 1024).isNull());
}

TEST(IconDecoderProcess, BadFilesDoNotEndTheProcess) {
    StartedDecoder decoder;
    ASSERT_TRUE(decoder.isReady());
    for (const auto& [name, bytes, outcome] : badIcons()) {
        if (outcome == BadIcon::Outcome::Overload) {
            continue;
        }
        ASSERT_TRUE(decoder.ask(bytes, 64)) << name;
        const auto answer = decoder.answer();
        ASSERT_TRUE(answer) << name;
        const bool isPicture = answer->outcome == DecodingOutcome::Picture;
        EXPECT_TRUE(isPicture || answer->outcome == DecodingOutcome::NoPicture) << name;
        if (outcome != BadIcon::Outcome::Either) {
            EXPECT_EQ(isPicture, outcome == BadIcon::Outcome::Picture) << name;
        }
    }
}

TEST(IconDecoderProcess, OverloadsMeetTheirLimits) {
    std::vector<std::unique_ptr<StartedDecoder>> overloaded;
    for (const auto& [name, bytes, outcome] : badIcons()) {
        if (outcome == BadIcon::Outcome::Overload) {
            overloaded.push_back(std::make_unique<StartedDecoder>());
            ASSERT_TRUE(overloaded.back()->isReady());
            ASSERT_TRUE(overloaded.back()->ask(bytes, 64)) << name;
        }
    }
    StartedDecoder decoder;
    ASSERT_TRUE(decoder.isReady());
    EXPECT_FALSE(decoder.decoded(png(32, 32), 48).isNull());
    // As long as the launcher waits, for all together. Then they are killed.
    auto longest = 2s;
    for (const auto& each : overloaded) {
        const bool isAnswered = each->waitForAnswer(std::exchange(longest, 0s)) && each->answer();
        if (!isAnswered) {
            ::kill(each->process(), SIGKILL);
            const int status = each->status();
            ASSERT_TRUE(WIFSIGNALED(status));
            EXPECT_NE(WTERMSIG(status), SIGSYS) << "not even then is anything tried that is refused";
        }
    }
}
