#include "platform/linux/applications/icons/workers/IconWorkerPool.h"

#include "WorkerProcesses.h"
#include "platform/linux/decoder/channel/IconBounds.h"
#include "support/IconFiles.h"
#include "support/LogRecorder.h"
#include "support/TestPaths.h"
#include "support/WaitUntil.h"

#include <algorithm>
#include <atomic>
#include <csignal>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <latch>
#include <random>
#include <sys/stat.h>
#include <thread>

using namespace amberquill;
using namespace amberquill::desktop;

namespace {

using Kind = DecodedFile::Kind;
using std::chrono::milliseconds;
using std::chrono::seconds;

// The commands in these files are described in FakeDecoder.cpp.
class IconWorkerPoolTest : public testing::Test {
protected:
    IconWorkerPoolTest() {
        settings_.program.paths = {testProgram(QStringLiteral("fake_decoder")).toStdString()};
        settings_.program.environment = {"FAKE_DECODER_FOLDER=" + files_.at().string()};
        settings_.limits = {.start = seconds(60), .picture = seconds(60), .end = seconds(60)};
        settings_.count = 2;
        settings_.now = [this] { return now_.load(); };
    }
    ~IconWorkerPoolTest() override {
        EXPECT_EQ(childProcesses(), std::vector<pid_t>());
        EXPECT_FALSE(isThere("third")) << "more than two processes at a time";
        EXPECT_FALSE(isThere("senseless")) << "an invalid request";
    }

    void startBy(const std::string& how) {
        settings_.program.environment.push_back("FAKE_DECODER_START=" + how);
    }

    bool isThere(const std::string& name) const { return std::filesystem::exists(files_.at(name)); }
    QByteArray read(const std::string& name) const {
        return isThere(name) ? files_.read(name) : QByteArray();
    }
    qsizetype starts() const { return read("started").count('\n'); }
    qsizetype startsWithFonts() const { return read("started").count(" fonts\n"); }
    // The processes that hang.
    std::vector<pid_t> hanging() const {
        std::vector<pid_t> result;
        for (const auto& entry : std::filesystem::directory_iterator(files_.at())) {
            const auto name = entry.path().filename().string();
            if (name.starts_with("hangs-")) {
                result.push_back(std::stoi(name.substr(6)));
            }
        }
        return result;
    }

    static DecodedFile decode(IconWorkerPool& workers, const std::string& file, int edge = 48) {
        return workers.decode(std::as_bytes(std::span(file)), edge);
    }
    static Kind outcome(IconWorkerPool& workers, const std::string& file) {
        return decode(workers, file).kind;
    }
    // Gray for a null image.
    static QRgb colour(IconWorkerPool& workers, const std::string& file) {
        const auto image = decode(workers, file).image;
        return image.isNull() ? qRgb(128, 128, 128) : image.pixel(image.width() / 2, image.height() / 2);
    }

    // Limits a picture to 20 ms. `used`: the processor time of the process at each question, from 0 on.
    void setProcessorTimes(std::function<milliseconds(int asked)> used) {
        settings_.limits.picture = milliseconds(20);
        settings_.processorTime = [this, used = std::move(used)](pid_t) { return used(asked_++); };
    }

    Kind outcomeOfHanging() {
        IconWorkerPool workers(settings_);
        return outcome(workers, "hang");
    }

    TemporaryTree files_;
    std::atomic<int> asked_ = 0; // how often for a processor time
    std::atomic<std::chrono::steady_clock::time_point> now_{
        std::chrono::steady_clock::time_point(seconds(100))};
    IconWorkerPool::Settings settings_;
};

} // namespace

TEST_F(IconWorkerPoolTest, PicturesHaveTheRequestedSizeAndShareAProcess) {
    IconWorkerPool workers(settings_);
    EXPECT_EQ(starts(), 0);
    const auto decoded = decode(workers, "red", 75);
    ASSERT_EQ(decoded.kind, Kind::Picture);
    EXPECT_EQ(decoded.image.size(), QSize(75, 75));
    EXPECT_EQ(decoded.image.format(), QImage::Format_ARGB32_Premultiplied);
    EXPECT_EQ(decoded.image.devicePixelRatio(), 1.0);
    QImage wanted(75, 75, QImage::Format_ARGB32_Premultiplied);
    wanted.fill(Qt::red);
    EXPECT_EQ(decoded.image, wanted);
    EXPECT_EQ(colour(workers, "green"), green);
    EXPECT_EQ(starts(), 1);
}

TEST_F(IconWorkerPoolTest, AFileThatIsNotAnIconEndsNoProcess) {
    IconWorkerPool workers(settings_);
    EXPECT_EQ(outcome(workers, "none"), Kind::NoPicture);
    EXPECT_EQ(outcome(workers, "red"), Kind::Picture);
    EXPECT_EQ(starts(), 1);
}

TEST_F(IconWorkerPoolTest, FilesOverTheBoundsAreNotSent) {
    IconWorkerPool workers(settings_);
    EXPECT_EQ(outcome(workers, ""), Kind::NoPicture);
    EXPECT_EQ(outcome(workers, std::string(maximumIconBytes + 1, ' ')), Kind::NoPicture);
    EXPECT_EQ(decode(workers, "red", 0).kind, Kind::NoPicture);
    EXPECT_EQ(decode(workers, "red", -5).kind, Kind::NoPicture);
    EXPECT_EQ(decode(workers, "red", maximumIconEdge + 1).kind, Kind::NoPicture);
    EXPECT_EQ(starts(), 0);
}

TEST_F(IconWorkerPoolTest, AProcessInheritsOnlyItsSocket) {
    settings_.program.environment.emplace_back("OTHER=x");
    const FileDescriptor inherited(::open("/dev/zero", O_RDONLY)); // NOLINT(android-cloexec-open)
    sigset_t blocked;
    ::sigemptyset(&blocked);
    ::sigaddset(&blocked, SIGUSR1);
    sigset_t before;
    ::pthread_sigmask(SIG_BLOCK, &blocked, &before);
    const auto former = std::signal(SIGUSR2, SIG_IGN);
    IconWorkerPool workers(settings_);
    EXPECT_EQ(outcome(workers, "report"), Kind::Picture);
    std::signal(SIGUSR2, former);
    ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
    EXPECT_EQ(read("report"), "leads a session: 1\n"
                              "descriptor 0: socket:\n"
                              "descriptor 1: /dev/null\n"
                              "descriptor 2: /dev/null\n"
                              "variable: FAKE_DECODER_FOLDER=" +
                                  QByteArray::fromStdString(files_.at().string()) + "\nvariable: OTHER=x\n");
}

TEST_F(IconWorkerPoolTest, ADrawingWithTextIsDecodedByAProcessWithFonts) {
    settings_.count = 1;
    IconWorkerPool workers(settings_);
    EXPECT_EQ(colour(workers, "red"), red);
    EXPECT_EQ(colour(workers, "text"), blue);
    EXPECT_EQ(colour(workers, "green"), green);
    EXPECT_EQ(colour(workers, "text"), blue);
    EXPECT_EQ(starts(), 2);
    EXPECT_EQ(startsWithFonts(), 1);
}

TEST_F(IconWorkerPoolTest, AtMostOneProcessHasFonts) {
    IconWorkerPool workers(settings_);
    std::atomic<int> right = 0;
    std::vector<std::thread> threads;
    for (int i = 0; i < 6; ++i) {
        threads.emplace_back([&] { right += colour(workers, "text") == blue ? 1 : 0; });
    }
    for (auto& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(right, 6);
    EXPECT_EQ(startsWithFonts(), 1);
}

TEST_F(IconWorkerPoolTest, AFileThatCrashesTwoProcessesIsUndecodable) {
    IconWorkerPool workers(settings_);
    for (const int signal :
         {SIGSEGV, SIGABRT, SIGBUS, SIGILL, SIGFPE, SIGTRAP, SIGSYS, SIGXCPU, SIGALRM, SIGPIPE}) {
        const auto before = starts();
        EXPECT_EQ(outcome(workers, "red"), Kind::Picture);
        EXPECT_EQ(outcome(workers, "signal " + std::to_string(signal)), Kind::Undecodable) << signal;
        EXPECT_EQ(starts(), before + 2) << signal;
    }
    for (const char* const file : {"exit 0", "exit 1", "exit 127"}) {
        EXPECT_EQ(outcome(workers, file), Kind::Undecodable) << file;
    }
    EXPECT_EQ(outcome(workers, "red"), Kind::Picture);
}

TEST_F(IconWorkerPoolTest, TheSecondTryIsInAFreshProcess) {
    IconWorkerPool workers(settings_);
    workers.prepare();
    EXPECT_EQ(outcome(workers, "crashes 1"), Kind::Picture);
    EXPECT_EQ(starts(), 3);
}

TEST_F(IconWorkerPoolTest, AFileWithTwoInvalidAnswersIsUndecodable) {
    IconWorkerPool workers(settings_);
    for (const char* const file : {"garbage", "short", "long", "descriptor", "smaller", "ready", "fonts"}) {
        EXPECT_EQ(outcome(workers, file), Kind::Undecodable) << file;
        EXPECT_EQ(colour(workers, "green"), green) << file;
    }
}

TEST_F(IconWorkerPoolTest, AFileAfterWhichTwoProcessesCloseTheirSocketIsUndecodable) {
    settings_.limits.end = milliseconds(20);
    IconWorkerPool workers(settings_);
    EXPECT_EQ(outcome(workers, "close"), Kind::Undecodable);
}

TEST_F(IconWorkerPoolTest, AFileThatCrashesOnlyOneProcessIsDecoded) {
    IconWorkerPool workers(settings_);
    EXPECT_EQ(outcome(workers, "crashes 1"), Kind::Picture);
    EXPECT_EQ(starts(), 2);
}

TEST_F(IconWorkerPoolTest, AFileWhoseProcessIsKilledFromOutsideIsNotUndecodable) {
    IconWorkerPool workers(settings_);
    EXPECT_EQ(outcome(workers, "killed 9"), Kind::Picture);
    for (const int signal : {SIGKILL, SIGTERM, SIGINT, SIGHUP}) {
        EXPECT_EQ(outcome(workers, "signal " + std::to_string(signal)), Kind::Unavailable) << signal;
    }
    EXPECT_EQ(outcome(workers, "red"), Kind::Picture);
}

TEST_F(IconWorkerPoolTest, AProcessThatIsKilledBeforeItIsReadyIsReplaced) {
    startBy("first killed");
    IconWorkerPool workers(settings_);
    EXPECT_EQ(outcome(workers, "red"), Kind::Picture);
    EXPECT_EQ(starts(), 2);
}

TEST_F(IconWorkerPoolTest, ProcessesKilledWhenReadyAreReplacedWithoutAPause) {
    startBy("thrice");
    IconWorkerPool workers(settings_);
    workers.prepare();
    ASSERT_TRUE(waitUntil([] { return runningChildProcesses().empty(); }));
    EXPECT_EQ(outcome(workers, "red"), Kind::Picture);
    EXPECT_EQ(starts(), 4);
}

TEST_F(IconWorkerPoolTest, AFileThatTakesTooLongIsUndecodable) {
    setProcessorTimes([](int asked) { return milliseconds(asked * 10); });
    EXPECT_EQ(outcomeOfHanging(), Kind::Undecodable);
    EXPECT_EQ(asked_, 2);
    EXPECT_EQ(starts(), 1);
}

TEST_F(IconWorkerPoolTest, AFileWhoseProcessHadNoProcessorTimeIsNotUndecodable) {
    setProcessorTimes([](int) { return milliseconds(0); });
    EXPECT_EQ(outcomeOfHanging(), Kind::Unavailable);
    EXPECT_EQ(starts(), 5);
}

TEST_F(IconWorkerPoolTest, AProcessThatGetsLittleProcessorTimeGoesOn) {
    setProcessorTimes([&](int asked) {
        if (asked == 0) {
            return milliseconds(0);
        }
        files_.write("go", {}); // only now the process answers
        return milliseconds(400);
    });
    settings_.limits.picture = seconds(1);
    IconWorkerPool workers(settings_);
    EXPECT_EQ(outcome(workers, "waits"), Kind::Picture);
    EXPECT_EQ(starts(), 1);
}

TEST_F(IconWorkerPoolTest, AFileThatTakesTooLongIsUndecodableAlsoOnABusyMachine) {
    setProcessorTimes([](int asked) { return milliseconds(asked * 2); });
    EXPECT_EQ(outcomeOfHanging(), Kind::Undecodable);
    EXPECT_EQ(asked_, 6);
    EXPECT_EQ(starts(), 1);
}

TEST_F(IconWorkerPoolTest, AFileIsGivenUpForNowAfterFiveTimesTheLimit) {
    setProcessorTimes([](int asked) { return milliseconds(asked == 0 ? 0 : 9); });
    EXPECT_EQ(outcomeOfHanging(), Kind::Unavailable);
    EXPECT_EQ(asked_, 1 + 1 + 4 * 8); // at the request, after the first limit, eight times in each other
    EXPECT_EQ(starts(), 1);
}

TEST_F(IconWorkerPoolTest, AProcessThatExitsAfterItsAnswerIsReplaced) {
    IconWorkerPool workers(settings_);
    EXPECT_EQ(colour(workers, "gone"), red);
    ASSERT_TRUE(waitUntil([] { return runningChildProcesses().empty(); }));
    EXPECT_EQ(colour(workers, "green"), green);
    EXPECT_EQ(starts(), 2);
}

TEST_F(IconWorkerPoolTest, AProcessThatSentItsLastAnswerIsReplaced) {
    IconWorkerPool workers(settings_);
    EXPECT_EQ(colour(workers, "last"), red);
    EXPECT_EQ(childProcesses(), std::vector<pid_t>());
    EXPECT_EQ(colour(workers, "green"), green);
}

TEST_F(IconWorkerPoolTest, AnExtraAnswerIsNotTakenForTheNext) {
    IconWorkerPool workers(settings_);
    EXPECT_EQ(colour(workers, "twice"), red);
    ASSERT_TRUE(waitUntil([&] { return isThere("twice"); }));
    EXPECT_EQ(colour(workers, "green"), green);
    EXPECT_EQ(starts(), 2);
}

TEST_F(IconWorkerPoolTest, AnAnswerBeforeTheRequestIsNotUsed) {
    settings_.count = 1;
    startBy("first early");
    IconWorkerPool workers(settings_);
    workers.prepare();
    ASSERT_TRUE(waitUntil([&] { return isThere("early"); }));
    EXPECT_EQ(colour(workers, "green"), green);
    EXPECT_EQ(starts(), 2);
}

TEST_F(IconWorkerPoolTest, PicturesAreValidPremultiplied) {
    IconWorkerPool workers(settings_);
    const auto image = decode(workers, "glowing", 3).image;
    ASSERT_EQ(image.size(), QSize(3, 3));
    for (qsizetype i = 0; i < 9; ++i) {
        EXPECT_EQ(reinterpret_cast<const QRgb*>(image.constBits())[i], 0x80804080U);
    }
}

TEST_F(IconWorkerPoolTest, TwoProcessesServeManyThreads) {
    IconWorkerPool workers(settings_);
    constexpr int each = 20;
    std::atomic<int> right = 0;
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 6; ++thread) {
        threads.emplace_back([&, thread] {
            for (int i = 0; i < each; ++i) {
                const bool isText = (i + thread) % 5 == 0;
                right += colour(workers, isText ? "text" : "green") == (isText ? blue : green) ? 1 : 0;
            }
        });
    }
    for (auto& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(right, 6 * each);
    EXPECT_EQ(childProcesses().size(), 2U);
}

TEST_F(IconWorkerPoolTest, OtherFilesAreDecodedWhileOneProcessIsBusy) {
    IconWorkerPool workers(settings_);
    std::thread slow([&] { EXPECT_EQ(outcome(workers, "hang"), Kind::Unavailable); });
    ASSERT_TRUE(waitUntil([&] { return hanging().size() == 1; }));
    for (const char* const file : {"red", "exit 1", "text", "signal 11", "red"}) {
        static_cast<void>(outcome(workers, file));
    }
    EXPECT_EQ(colour(workers, "green"), green);
    EXPECT_EQ(hanging().size(), 1U);
    workers.shutDown();
    slow.join();
}

TEST_F(IconWorkerPoolTest, AFreeProcessIsUsedWhileAnotherStarts) {
    startBy("second silent");
    settings_.limits.start = seconds(1);
    IconWorkerPool workers(settings_);
    std::thread slow([&] { EXPECT_EQ(outcome(workers, "waits"), Kind::Picture); });
    ASSERT_TRUE(waitUntil([&] { return isThere("waits"); }));
    std::thread asks([&] { EXPECT_EQ(colour(workers, "green"), green); });
    ASSERT_TRUE(waitUntil([&] { return hanging().size() == 1; }));
    files_.write("go", "");
    slow.join();
    asks.join();
    EXPECT_EQ(runningChildProcesses().size(), 2U); // the starting process was kept
}

TEST_F(IconWorkerPoolTest, AMissingProgramIsTriedAgainAfterAPause) {
    const auto program = std::exchange(settings_.program.paths, {files_.at("later").string()}).front();
    QLoggingCategory::setFilterRules(QStringLiteral("amberquill.decoder.warning=true"));
    testing::internal::CaptureStderr();
    IconWorkerPool workers(settings_);
    workers.prepare();
    EXPECT_EQ(outcome(workers, "red"), Kind::Unavailable);
    std::filesystem::create_symlink(program, files_.at("later"));
    EXPECT_EQ(outcome(workers, "red"), Kind::Unavailable);
    now_ = now_.load() + settings_.pause - milliseconds(1);
    EXPECT_EQ(outcome(workers, "red"), Kind::Unavailable);
    std::filesystem::remove(files_.at("later"));
    now_ = now_.load() + milliseconds(1);
    EXPECT_EQ(outcome(workers, "red"), Kind::Unavailable);
    std::filesystem::create_symlink(program, files_.at("later"));
    now_ = now_.load() + settings_.pause;
    EXPECT_EQ(outcome(workers, "red"), Kind::Picture);
    const auto said = testing::internal::GetCapturedStderr();
    QLoggingCategory::setFilterRules({});
    const std::string words = "Icons cannot be decoded";
    EXPECT_NE(said.find(words), std::string::npos);
    EXPECT_EQ(said.find(words), said.rfind(words)) << said;
}

TEST_F(IconWorkerPoolTest, TheFirstProgramThatCanBeStartedIsUsed) {
    settings_.program.paths.insert(settings_.program.paths.begin(), files_.at("missing").string());
    IconWorkerPool workers(settings_);
    EXPECT_EQ(outcome(workers, "red"), Kind::Picture);
}

TEST_F(IconWorkerPoolTest, AProgramThatIsNeverReadyCausesAPause) {
    for (const char* const how : {"exit", "picture", "close", "silent"}) {
        auto settings = settings_;
        settings.program.environment.push_back(std::string("FAKE_DECODER_START=") + how);
        if (how == std::string("silent")) {
            settings.limits.start = milliseconds(20);
        }
        if (how == std::string("close")) {
            settings.limits.end = milliseconds(20);
        }
        const auto before = starts();
        IconWorkerPool workers(settings);
        EXPECT_EQ(outcome(workers, "red"), Kind::Unavailable) << how;
        const auto after = starts();
        EXPECT_GT(after, before) << how;
        EXPECT_LE(after, before + 3) << how;
        EXPECT_EQ(outcome(workers, "red"), Kind::Unavailable) << how;
        EXPECT_EQ(starts(), after) << how;
        now_ = now_.load() + settings.pause;
        EXPECT_EQ(outcome(workers, "red"), Kind::Unavailable) << how;
        EXPECT_GT(starts(), after) << how;
    }
}

TEST_F(IconWorkerPoolTest, OneFailedStartCausesNoPause) {
    startBy("first exit");
    IconWorkerPool workers(settings_);
    EXPECT_EQ(outcome(workers, "red"), Kind::Picture);
    EXPECT_EQ(starts(), 2);
}

TEST_F(IconWorkerPoolTest, PreparedProcessesAreUsed) {
    IconWorkerPool workers(settings_);
    workers.prepare();
    workers.prepare();
    EXPECT_EQ(childProcesses().size(), 2U);
    EXPECT_EQ(colour(workers, "green"), green);
    EXPECT_EQ(childProcesses().size(), 2U);
}

TEST_F(IconWorkerPoolTest, RestEndsProcessesUntilTheNextFile) {
    IconWorkerPool workers(settings_);
    workers.rest();
    EXPECT_EQ(colour(workers, "text"), blue);
    workers.rest();
    EXPECT_EQ(childProcesses(), std::vector<pid_t>());
    EXPECT_EQ(colour(workers, "green"), green);
    EXPECT_EQ(startsWithFonts(), 1);
}

TEST_F(IconWorkerPoolTest, RestKeepsBusyProcesses) {
    IconWorkerPool workers(settings_);
    std::thread slow([&] { static_cast<void>(outcome(workers, "hang")); });
    ASSERT_TRUE(waitUntil([&] { return hanging().size() == 1; }));
    EXPECT_EQ(outcome(workers, "red"), Kind::Picture);
    workers.rest();
    EXPECT_EQ(runningChildProcesses(), hanging());
    workers.shutDown();
    slow.join();
}

TEST_F(IconWorkerPoolTest, AfterShutDownAllCallsReturnAndNothingStarts) {
    IconWorkerPool workers(settings_);
    std::vector<std::thread> threads;
    std::latch asked(6);
    for (int i = 0; i < 6; ++i) {
        threads.emplace_back([&] {
            asked.count_down();
            EXPECT_EQ(outcome(workers, "hang"), Kind::Unavailable);
        });
    }
    asked.wait();
    ASSERT_TRUE(waitUntil([&] { return hanging().size() == 2; }));
    workers.shutDown();
    for (auto& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(childProcesses(), std::vector<pid_t>());
    workers.prepare();
    EXPECT_EQ(outcome(workers, "red"), Kind::Unavailable);
    EXPECT_EQ(starts(), 2);
}

TEST_F(IconWorkerPoolTest, ShutDownDoesNotWaitForAStart) {
    startBy("silent");
    IconWorkerPool workers(settings_);
    std::thread waits([&] { EXPECT_EQ(outcome(workers, "red"), Kind::Unavailable); });
    ASSERT_TRUE(waitUntil([&] { return hanging().size() == 1; }));
    workers.shutDown();
    waits.join();
}

TEST_F(IconWorkerPoolTest, ShutDownDoesNotWaitForAStoppedProcess) {
    IconWorkerPool workers(settings_);
    std::thread waits([&] { EXPECT_EQ(outcome(workers, "hang"), Kind::Unavailable); });
    ASSERT_TRUE(waitUntil([&] { return hanging().size() == 1; }));
    ASSERT_EQ(::kill(hanging().front(), SIGSTOP), 0);
    workers.shutDown();
    waits.join();
}

TEST_F(IconWorkerPoolTest, EveryPictureIsDecodedWhileProcessesAreKilledAtRandom) {
    IconWorkerPool workers(settings_);
    constexpr int each = 60;
    std::atomic<int> right = 0;
    std::atomic<int> killed = 0;
    std::vector<std::thread> threads;
    for (unsigned int thread = 0; thread < 4; ++thread) {
        threads.emplace_back([&, thread] {
            std::mt19937 random(thread);
            for (unsigned int i = 0; i < each; ++i) {
                const bool isText = (i + thread) % 7 == 0;
                killed += i % 3 == 0 && killChildProcess(random) ? 1 : 0;
                right += colour(workers, isText ? "text" : "green") == (isText ? blue : green) ? 1 : 0;
            }
        });
    }
    for (auto& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(right, 4 * each);
    EXPECT_GT(killed, 0);
}

TEST_F(IconWorkerPoolTest, EachFailedAttemptIsLoggedWithTheReason) {
    IconWorkerPool workers(settings_);
    const auto crash =
        debugLog("amberquill.decoder", [&] { EXPECT_EQ(outcome(workers, "signal 11"), Kind::Undecodable); });
    EXPECT_EQ(std::count(crash.begin(), crash.end(), '\n'), 2) << crash;
    EXPECT_NE(crash.find("A file of 9 bytes was not decoded: the process ended"), std::string::npos) << crash;
    EXPECT_EQ(debugLog("amberquill.decoder", [&] { EXPECT_EQ(outcome(workers, "red"), Kind::Picture); }), "");
}
