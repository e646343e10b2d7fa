#include "platform/linux/applications/icons/workers/WorkerProcess.h"

#include "WorkerProcesses.h"
#include "support/WaitUntil.h"

#include <QDeadlineTimer>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <gtest/gtest.h>

using namespace amberquill;
using namespace amberquill::desktop;

namespace {

using End = WorkerProcess::End;

const QDeadlineTimer never(QDeadlineTimer::Forever);

// A shell that runs this script.
std::unique_ptr<WorkerProcess> shell(const std::string& script) {
    const FileDescriptor nothing(::open("/dev/null", O_RDWR | O_CLOEXEC));
    return WorkerProcess::start({.paths = {"/bin/sh"}, .environment = {}}, {"-c", script}, nothing);
}

} // namespace

TEST(WorkerProcess, AFailedStartSetsErrno) {
    const FileDescriptor nothing(::open("/dev/null", O_RDWR | O_CLOEXEC));
    EXPECT_EQ(WorkerProcess::start({.paths = {"/nonexistent"}, .environment = {}}, {}, nothing), nullptr);
    EXPECT_EQ(errno, ENOENT);
    EXPECT_EQ(WorkerProcess::start({.paths = {"/dev/null"}, .environment = {}}, {}, nothing), nullptr);
    EXPECT_EQ(errno, EACCES);
    EXPECT_EQ(childProcesses(), std::vector<pid_t>());
}

TEST(WorkerProcess, TheEndIsByItselfOrFromOutside) {
    EXPECT_EQ(shell("exit 0")->waitForEnd(never), End::ByItself);
    EXPECT_EQ(shell("exit 137")->waitForEnd(never), End::ByItself);
    for (const char* const signal : {"SEGV", "ABRT", "BUS", "ILL", "FPE", "TRAP", "SYS", "XCPU", "ALRM"}) {
        EXPECT_EQ(shell(std::string("ulimit -c 0; kill -") + signal + " $$")->waitForEnd(never),
                  End::ByItself)
            << signal;
    }
    for (const char* const signal : {"KILL", "TERM", "INT", "HUP"}) {
        EXPECT_EQ(shell(std::string("kill -") + signal + " $$")->waitForEnd(never), End::FromOutside)
            << signal;
    }
    EXPECT_EQ(childProcesses(), std::vector<pid_t>());
}

TEST(WorkerProcess, AProcessThatDoesNotEndInTimeIsKilled) {
    const auto process = shell("while :; do :; done");
    EXPECT_EQ(process->waitForEnd(QDeadlineTimer(0)), std::nullopt);
    EXPECT_TRUE(waitUntil([] { return runningChildProcesses().empty(); }));
}

TEST(WorkerProcess, WithoutAProcessDescriptorItIsKilledAtOnce) {
    const auto child = [](const char* script) {
        const pid_t id = ::fork();
        if (id == 0) {
            ::execl("/bin/sh", "sh", "-c", script, nullptr);
            ::_exit(127);
        }
        return std::make_unique<WorkerProcess>(id, FileDescriptor());
    };
    EXPECT_EQ(child("while :; do :; done")->waitForEnd(never), End::FromOutside);
    const auto ended = child("exit 3");
    ASSERT_TRUE(waitUntil([] { return runningChildProcesses().empty(); }));
    EXPECT_EQ(ended->waitForEnd(never), End::ByItself);
    child("while :; do :; done").reset();
    EXPECT_EQ(childProcesses(), std::vector<pid_t>());
}

TEST(WorkerProcess, TheDestructorKillsAndReaps) {
    static_cast<void>(shell("while :; do :; done"));
    auto stopped = shell("while :; do :; done");
    ASSERT_EQ(::kill(stopped->id(), SIGSTOP), 0);
    stopped.reset();
    EXPECT_EQ(childProcesses(), std::vector<pid_t>());
}

TEST(WorkerProcess, ProcessorTimeIsMeasured) {
    const auto busy = shell("while :; do :; done");
    EXPECT_TRUE(waitUntil([&] { return processorTimeOf(busy->id()) > std::chrono::milliseconds(50); }));
    constexpr pid_t nobody = 0x400001; // above the system's maximum
    EXPECT_EQ(processorTimeOf(nobody), std::chrono::nanoseconds(0));
}
