#include "platform/linux/decoder/process/Sandbox.h"
#include "SandboxProbe.h"
#include "StartedDecoder.h"
#include "support/TemporaryTree.h"

#include <QDir>
#include <sys/syscall.h>

using namespace amberquill;
using namespace amberquill::desktop;

namespace {

enum class Result { Succeeded, Failed, Killed, NotTried };

void PrintTo(Result result, std::ostream* stream) {
    constexpr std::array names{"Succeeded", "Failed", "Killed", "NotTried"};
    *stream << names.at(static_cast<std::size_t>(result));
}

class Sandbox : public testing::Test {
protected:
    Sandbox() {
        folder_.write("file", "text");
        folder_.write("fonts/font", "text");
    }

    // The outcome of an operation in the sandbox, without it, and in the sandbox that may read a folder.
    [[nodiscard]] Result confined(const std::string& name) const { return tried("confined", name); }
    [[nodiscard]] Result free(const std::string& name) const { return tried("free", name); }
    [[nodiscard]] Result reading(const std::string& name) const { return tried("reading", name); }

    static bool isRefused(Result result) { return result == Result::Failed || result == Result::Killed; }

    static bool kernelHasLandlock() {
        constexpr int version = 1; // asks for Landlock's version
        return ::syscall(SYS_landlock_create_ruleset, nullptr, 0, version) >= 1;
    }

    TemporaryTree folder_;

private:
    [[nodiscard]] Result tried(const std::string& mode, const std::string& name) const {
        StartedDecoder probe(QStringLiteral("sandbox_probe"), {mode, name, folder_.path().toStdString()});
        const int status = probe.status();
        if (WIFSIGNALED(status)) {
            EXPECT_EQ(WTERMSIG(status), SIGSYS);
            return Result::Killed;
        }
        switch (static_cast<ProbeExit>(WEXITSTATUS(status))) {
        case ProbeExit::Succeeded:
            return Result::Succeeded;
        case ProbeExit::Failed:
            return Result::Failed;
        case ProbeExit::NoSandbox:
        case ProbeExit::Unknown:
            break;
        }
        return Result::NotTried;
    }
};

// Operations that are denied to processes with fonts as well.
constexpr std::array refusedToAll{
    "read a file",
    "list a folder",
    "write a file",
    "write a font",
    "empty a font",
    "make a font",
    "make a nameless file",
    "remove a file",
    "rename a file",
    "link a file",
    "make a folder",
    "change a mode",
    "enter a folder",
    "make memory with a descriptor",
    "resize memory with a descriptor",
    "copy a descriptor",
    "ask a device",
    "make a socket",
    "make a local socket",
    "connect",
    "send elsewhere",
    "send a message by another socket",
#ifndef AMBERQUILL_SANITIZED
    "write to another socket", // sanitizers write to pipes
#endif
    "start a process",
    "run a program",
    "be traced",
    "signal its parent",
    "signal a thread of its parent",
    "change its limits",
    "change what it is",
    "have a namespace of its own",
    "make memory that runs",
    "have memory run",
};

constexpr std::array forReaders{"read a font", "list the fonts"};

} // namespace

TEST_F(Sandbox, EveryAttemptSucceedsOutsideOfTheSandbox) {
    for (const auto& names :
         {std::span<const char* const>(refusedToAll), std::span<const char* const>(forReaders)}) {
        for (const auto* const name : names) {
            EXPECT_EQ(free(name), Result::Succeeded) << name;
            folder_.write("file", "text");
            folder_.write("fonts/font", "text");
            folder_.remove("file2");
        }
    }
}

TEST_F(Sandbox, FilesTheNetworkAndOtherProcessesAreDenied) {
    for (const auto* const name : refusedToAll) {
        EXPECT_TRUE(isRefused(confined(name))) << name;
    }
    for (const auto* const name : forReaders) {
        EXPECT_TRUE(isRefused(confined(name))) << name;
    }
}

TEST_F(Sandbox, OtherSystemCallsEndTheProcess) {
    for (const auto* const name :
         {"make a socket", "connect", "start a process", "run a program", "be traced", "signal its parent",
          "make memory that runs", "have memory run", "make memory with a descriptor"}) {
        EXPECT_EQ(confined(name), Result::Killed) << name;
    }
}

TEST_F(Sandbox, WithFontsOnlyTheirFilesAreReadable) {
    if (!kernelHasLandlock()) {
        GTEST_SKIP() << "this kernel cannot let a process read some files only";
    }
    for (const auto* const name : forReaders) {
        EXPECT_EQ(reading(name), Result::Succeeded) << name;
    }
    for (const auto* const name : refusedToAll) {
        EXPECT_TRUE(isRefused(reading(name))) << name;
    }
}

TEST_F(Sandbox, ThreadsAndMemoryAreAllowed) {
    EXPECT_EQ(confined("start threads"), Result::Succeeded);
    EXPECT_EQ(confined("take much memory"), Result::Succeeded);
}

TEST_F(Sandbox, MemoryIsLimited) {
#ifdef AMBERQUILL_SANITIZED
    GTEST_SKIP() << "sanitizers reserve more than any limit";
#else
    EXPECT_EQ(free("take too much memory"), Result::Succeeded);
    EXPECT_EQ(confined("take too much memory"), Result::Failed);
#endif
}
