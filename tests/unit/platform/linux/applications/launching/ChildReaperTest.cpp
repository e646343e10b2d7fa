#include "platform/linux/applications/launching/ChildReaper.h"

#include "platform/linux/files/FileDescriptor.h"

#include "Report.h"
#include "support/ManualQueue.h"
#include "support/WaitUntil.h"

#include <csignal>
#include <gtest/gtest.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace amberquill;
using namespace amberquill::desktop;

namespace {

// A child that runs until it is killed, by the destructor at the latest.
pid_t startChild() {
    const pid_t child = fork();
    if (child == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        while (true) {
            pause();
        }
    }
    return child;
}

// Kills the child and waits until it has ended, without reaping it.
void end(pid_t child) {
    kill(child, SIGKILL);
    siginfo_t information{};
    waitid(P_PID, static_cast<id_t>(child), &information, WEXITED | WNOWAIT);
}

} // namespace

TEST(ChildReaper, NoZombieIsLeft) {
    ManualQueue queue;
    ChildReaper reaper(queue);
    const pid_t child = startChild();
    reaper.watch(child, processDescriptor(child));
    end(child);
    EXPECT_TRUE(processExists(child));
    EXPECT_TRUE(waitUntil([child] { return !processExists(child); }));
}

TEST(ChildReaper, WithoutAProcessDescriptorTheChildIsPolled) {
    ManualQueue queue;
    ChildReaper reaper(queue);
    const pid_t child = startChild();
    reaper.watch(child, {});
    queue.advance(60);
    EXPECT_TRUE(processExists(child));
    end(child);
    queue.advance(5);
    EXPECT_FALSE(processExists(child));
    EXPECT_EQ(queue.waiting(), 0U) << "and looks no more";
}

TEST(ChildReaper, OtherChildrenAreNotReaped) {
    ManualQueue queue;
    ChildReaper reaper(queue);
    const pid_t watched = startChild();
    const pid_t other = startChild();
    reaper.watch(watched, processDescriptor(watched));
    end(other);
    end(watched);
    EXPECT_TRUE(waitUntil([watched] { return !processExists(watched); }));
    EXPECT_EQ(waitpid(other, nullptr, 0), other);
}

TEST(ChildReaper, ItMayBeDestroyedBeforeItsChildrenEnd) {
    ManualQueue queue;
    const pid_t first = startChild();
    const pid_t second = startChild();
    {
        ChildReaper reaper(queue);
        reaper.watch(first, processDescriptor(first));
        reaper.watch(second, {});
    }
    queue.advance(60);
    end(first);
    end(second);
    EXPECT_EQ(waitpid(first, nullptr, 0), first);
    EXPECT_EQ(waitpid(second, nullptr, 0), second);
}
