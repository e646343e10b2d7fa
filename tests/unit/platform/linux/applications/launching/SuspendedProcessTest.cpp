#include "platform/linux/applications/launching/SuspendedProcess.h"

#include "Report.h"
#include "support/WaitUntil.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/wait.h>

using namespace amberquill;
using namespace amberquill::desktop;
using namespace Qt::StringLiterals;

namespace {

class SuspendedProcessTest : public testing::Test {
protected:
    // A request for the reporter.
    ProcessRequest request() const {
        ProcessRequest made;
        made.program = QFile::encodeName(reporterPath());
        made.arguments = {"reporter", QFile::encodeName(reportPath())};
        made.environment = {"A=1"};
        made.workingDirectories = {QFile::encodeName(folder_.path())};
        made.limits = InheritedLimits::capture();
        return made;
    }

    QString reportPath() const { return folder_.filePath(u"report"_s); }

    // Starts the process, resumes it at once and waits for the report.
    std::optional<Report> run(const ProcessRequest& asked) {
        std::optional<SuspendedProcess> suspended = startSuspended(asked);
        if (!suspended) {
            return std::nullopt;
        }
        suspended->resume();
        std::optional<Report> report = awaitReport(reportPath());
        waitpid(suspended->id, nullptr, 0);
        return report;
    }

    QTemporaryDir folder_;
};

// Waits for the error number of execve; 0: the program runs.
int outcomeOf(const SuspendedProcess& suspended) {
    int error = 0;
    const ssize_t count = read(suspended.outcome.get(), &error, sizeof error);
    return count == 0 ? 0 : error;
}

int startError(const ProcessRequest& request) {
    std::optional<SuspendedProcess> suspended = startSuspended(request);
    suspended->resume();
    const int error = outcomeOf(*suspended);
    waitpid(suspended->id, nullptr, 0);
    return error;
}

// Redirects a standard stream of this process while it lives.
class StreamElsewhere {
public:
    StreamElsewhere(int stream, int target)
        : stream_(stream)
        , before_(fcntl(stream, F_DUPFD_CLOEXEC, 20)) {
        dup2(target, stream);
    }
    StreamElsewhere(const StreamElsewhere&) = delete;
    StreamElsewhere& operator=(const StreamElsewhere&) = delete;
    ~StreamElsewhere() {
        dup2(before_, stream_);
        close(before_);
    }

private:
    int stream_;
    int before_;
};

} // namespace

TEST_F(SuspendedProcessTest, TheArgumentsAndTheEnvironmentAreUnchanged) {
    ProcessRequest asked = request();
    asked.arguments.insert(asked.arguments.end(), {"", "a b", "\"$HOME\"", "\xc3\xa9\n"});
    asked.environment = {"A=1", "B=x y"};
    const auto report = run(asked);
    ASSERT_TRUE(report);
    EXPECT_EQ(report->programName, "reporter");
    EXPECT_EQ(report->arguments, QStringList({u""_s, u"a b"_s, u"\"$HOME\""_s, u"é\n"_s}));
    EXPECT_EQ(report->variables, (QHash<QByteArray, QByteArray>{{"A", "1"}, {"B", "x y"}}));
}

TEST_F(SuspendedProcessTest, TheVariableHasItsProcessId) {
    ProcessRequest asked = request();
    asked.processIdVariable = "OWN_NUMBER";
    const auto report = run(asked);
    ASSERT_TRUE(report);
    EXPECT_EQ(report->variables.value("OWN_NUMBER"), QByteArray::number(report->process));
}

TEST_F(SuspendedProcessTest, ItLeadsASessionOfItsOwn) {
    const auto report = run(request());
    ASSERT_TRUE(report);
    EXPECT_EQ(report->session, report->process);
    EXPECT_NE(report->session, getsid(0));
}

TEST_F(SuspendedProcessTest, NoFileOfOursIsOpenInIt) {
    const FileDescriptor ours(open("/etc/passwd", O_RDONLY)); // does not close on exec
    const FileDescriptor high(fcntl(ours.get(), F_DUPFD, 500));
    ASSERT_TRUE(high.isOpen());
    const auto report = run(request());
    ASSERT_TRUE(report);
    QList<int> open = report->descriptors.keys();
    std::sort(open.begin(), open.end());
    EXPECT_EQ(open, QList<int>({0, 1, 2}));
}

TEST_F(SuspendedProcessTest, ItsInputIsEmpty) {
    const auto report = run(request());
    ASSERT_TRUE(report);
    EXPECT_EQ(report->descriptors.value(0), "/dev/null");
}

TEST_F(SuspendedProcessTest, ItsOutputIsOurs) {
    const QByteArray path = QFile::encodeName(folder_.filePath(u"log"_s));
    const FileDescriptor log(open(path.constData(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600));
    const StreamElsewhere error(STDERR_FILENO, log.get());
    const auto report = run(request());
    ASSERT_TRUE(report);
    EXPECT_EQ(report->descriptors.value(2), path);
}

TEST_F(SuspendedProcessTest, ANonBlockingStreamIsNotPassedOn) {
    const QByteArray path = QFile::encodeName(folder_.filePath(u"log"_s));
    const FileDescriptor log(open(path.constData(), O_WRONLY | O_CREAT | O_CLOEXEC | O_NONBLOCK, 0600));
    const StreamElsewhere error(STDERR_FILENO, log.get());
    const auto report = run(request());
    ASSERT_TRUE(report);
    EXPECT_EQ(report->descriptors.value(2), "/dev/null");
    EXPECT_FALSE(report->nonBlocking.value(2));
}

TEST_F(SuspendedProcessTest, APipeIsNotPassedOn) {
    int ends[2];
    ASSERT_EQ(pipe2(ends, O_CLOEXEC), 0);
    const FileDescriptor reading(ends[0]);
    const FileDescriptor writing(ends[1]);
    const StreamElsewhere output(STDOUT_FILENO, writing.get());
    const auto report = run(request());
    ASSERT_TRUE(report);
    EXPECT_EQ(report->descriptors.value(1), "/dev/null");
}

TEST_F(SuspendedProcessTest, AFileInThePlaceOfAMissingStreamIsNotPassedOn) {
    const FileDescriptor secret(open("/etc/passwd", O_RDONLY | O_CLOEXEC));
    const StreamElsewhere output(STDOUT_FILENO, secret.get());
    fcntl(STDOUT_FILENO, F_SETFD, FD_CLOEXEC);
    const auto report = run(request());
    ASSERT_TRUE(report);
    EXPECT_EQ(report->descriptors.value(1), "/dev/null");
}

TEST_F(SuspendedProcessTest, MissingStreamsAreReplaced) {
    const FileDescriptor nothing(open("/dev/null", O_WRONLY | O_CLOEXEC));
    std::optional<Report> report;
    {
        const StreamElsewhere input(STDIN_FILENO, nothing.get());
        const StreamElsewhere output(STDOUT_FILENO, nothing.get());
        const StreamElsewhere error(STDERR_FILENO, nothing.get());
        close(STDIN_FILENO);
        close(STDOUT_FILENO);
        close(STDERR_FILENO);
        report = run(request());
    }
    ASSERT_TRUE(report);
    EXPECT_EQ(report->descriptors,
              (QHash<int, QByteArray>{{0, "/dev/null"}, {1, "/dev/null"}, {2, "/dev/null"}}));
}

TEST_F(SuspendedProcessTest, NoSignalIsBlockedOrIgnored) {
    sigset_t blocked;
    sigset_t before;
    sigemptyset(&blocked);
    sigaddset(&blocked, SIGUSR1);
    sigaddset(&blocked, SIGCHLD);
    pthread_sigmask(SIG_BLOCK, &blocked, &before);
    auto* const pipeBefore = std::signal(SIGPIPE, SIG_IGN);
    auto* const hangUpBefore = std::signal(SIGHUP, SIG_IGN);
    const auto report = run(request());
    std::signal(SIGPIPE, pipeBefore);
    std::signal(SIGHUP, hangUpBefore);
    sigset_t ours;
    pthread_sigmask(SIG_SETMASK, &before, &ours);
    ASSERT_TRUE(report);
    EXPECT_EQ(report->blockedSignals.toULongLong(nullptr, 16), 0U);
    EXPECT_EQ(report->ignoredSignals.toULongLong(nullptr, 16), 0U);
    EXPECT_EQ(sigismember(&ours, SIGUSR1), 1) << "our own mask is as it was";
    EXPECT_EQ(sigismember(&ours, SIGUSR2), 0);
}

TEST_F(SuspendedProcessTest, ItHasTheInheritedLimits) {
    rlimit before{};
    getrlimit(RLIMIT_NOFILE, &before);
    ASSERT_GT(before.rlim_cur, 300U);
    const rlimit atStart{300, before.rlim_max};
    setrlimit(RLIMIT_NOFILE, &atStart);
    const ProcessRequest asked = request();
    setrlimit(RLIMIT_NOFILE, &before); // as programs with many files do
    const auto report = run(asked);
    ASSERT_TRUE(report);
    EXPECT_EQ(report->fileLimit, 300U);
}

TEST_F(SuspendedProcessTest, ItHasTheInheritedOutOfMemoryScore) {
    const ProcessRequest asked = request();
    ASSERT_FALSE(asked.limits.outOfMemoryScore.isEmpty());
    QFile score(u"/proc/self/oom_score_adj"_s);
    ASSERT_TRUE(score.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
    ASSERT_EQ(score.write("700"), 3);
    const auto report = run(asked);
    score.write(asked.limits.outOfMemoryScore);
    ASSERT_TRUE(report);
    EXPECT_EQ(report->outOfMemoryScore, asked.limits.outOfMemoryScore);
}

TEST_F(SuspendedProcessTest, TheWorkingDirectoryIsTheFirstThatCanBeEntered) {
    ProcessRequest asked = request();
    asked.workingDirectories = {"/nowhere/at/all", "/etc/passwd", QFile::encodeName(folder_.path())};
    const auto report = run(asked);
    ASSERT_TRUE(report);
    EXPECT_EQ(report->folder, QFile::encodeName(QDir(folder_.path()).canonicalPath()));
}

TEST_F(SuspendedProcessTest, WithoutAFolderTheWorkingDirectoryIsTheRoot) {
    ProcessRequest asked = request();
    asked.workingDirectories = {"/nowhere/at/all"};
    const auto report = run(asked);
    ASSERT_TRUE(report);
    EXPECT_EQ(report->folder, "/");
}

TEST_F(SuspendedProcessTest, ItWaitsAtTheStartGate) {
    std::optional<SuspendedProcess> suspended = startSuspended(request());
    ASSERT_TRUE(suspended);
    pollfd outcome{suspended->outcome.get(), POLLIN, 0};
    EXPECT_EQ(poll(&outcome, 1, 50), 0) << "neither failed nor running";
    EXPECT_EQ(QFileInfo(u"/proc/%1/exe"_s.arg(suspended->id)).symLinkTarget(),
              QCoreApplication::applicationFilePath());
    suspended->resume();
    EXPECT_EQ(outcomeOf(*suspended), 0);
    EXPECT_TRUE(awaitReport(reportPath()));
    waitpid(suspended->id, nullptr, 0);
}

TEST_F(SuspendedProcessTest, TheStartGateOpensWhileACopyOfOurEndIsOpen) {
    std::optional<SuspendedProcess> suspended = startSuspended(request());
    ASSERT_TRUE(suspended);
    const FileDescriptor copy(fcntl(suspended->startGate.get(), F_DUPFD_CLOEXEC, 0));
    suspended->resume();
    EXPECT_EQ(outcomeOf(*suspended), 0);
    EXPECT_TRUE(awaitReport(reportPath()));
    waitpid(suspended->id, nullptr, 0);
}

TEST_F(SuspendedProcessTest, ResumingAnEndedProcessIsHarmless) {
    std::optional<SuspendedProcess> suspended = startSuspended(request());
    ASSERT_TRUE(suspended);
    kill(suspended->id, SIGKILL);
    waitpid(suspended->id, nullptr, 0);
    suspended->resume(); // no SIGPIPE
    EXPECT_FALSE(suspended->startGate.isOpen());
}

TEST_F(SuspendedProcessTest, ASuspendedProcessDoesNotBlockAnotherStart) {
    const std::optional<SuspendedProcess> waiting = startSuspended(request());
    ASSERT_TRUE(waiting);
    ASSERT_TRUE(run(request())); // would hang if the first process withheld the EOF
    kill(waiting->id, SIGKILL);
    waitpid(waiting->id, nullptr, 0);
}

TEST_F(SuspendedProcessTest, AProgramThatRunsIsASuccess) {
    EXPECT_EQ(startError(request()), 0);
}

TEST_F(SuspendedProcessTest, AFailedExecReportsTheError) {
    ProcessRequest asked = request();
    asked.program = "/nowhere/at/all";
    EXPECT_EQ(startError(asked), ENOENT);
    asked.program = "/etc";
    EXPECT_EQ(startError(asked), EACCES);
    const QString text = folder_.filePath(u"text"_s);
    QFile file(text);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("echo no shell reads this\n");
    file.setPermissions(QFile::ReadOwner | QFile::ExeOwner);
    file.close();
    asked.program = QFile::encodeName(text);
    EXPECT_EQ(startError(asked), ENOEXEC);
}

TEST_F(SuspendedProcessTest, ItsEndCanBeObserved) {
    std::optional<SuspendedProcess> suspended = startSuspended(request());
    ASSERT_TRUE(suspended);
    ASSERT_TRUE(suspended->process.isOpen());
    pollfd process{suspended->process.get(), POLLIN, 0};
    EXPECT_EQ(poll(&process, 1, 0), 0);
    suspended->resume();
    EXPECT_EQ(poll(&process, 1, 10'000), 1);
    waitpid(suspended->id, nullptr, 0);
}

TEST_F(SuspendedProcessTest, NoDescriptorIsLeftOpenInTheLauncher) {
    const auto openFiles = [] {
        return QDir(u"/proc/self/fd"_s).entryList(QDir::Files | QDir::System).size();
    };
    const auto before = openFiles();
    for (int i = 0; i < 5; ++i) {
        ASSERT_EQ(startError(request()), 0);
    }
    EXPECT_EQ(openFiles(), before);
}

TEST_F(SuspendedProcessTest, WithoutFreeDescriptorsItFails) {
    const ProcessRequest asked = request();
    rlimit before{};
    getrlimit(RLIMIT_NOFILE, &before);
    // Room for one of the two channels, and for descriptors of sanitizers.
    const FileDescriptor firstFree(dup(STDERR_FILENO));
    const rlimit little{static_cast<rlim_t>(firstFree.get()) + 4, before.rlim_max};
    setrlimit(RLIMIT_NOFILE, &little);
    const bool started = startSuspended(asked).has_value();
    setrlimit(RLIMIT_NOFILE, &before);
    EXPECT_FALSE(started);
}
