#include "platform/linux/applications/launching/ChildSetup.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace amberquill::desktop;

// In a child process, because it closes all descriptors.
TEST(ChildSetup, ClosingOneByOneKeepsLowerDescriptors) {
    const pid_t child = fork();
    if (child == 0) {
        const int kept = fcntl(STDOUT_FILENO, F_DUPFD, 200);
        const int closed = fcntl(STDOUT_FILENO, F_DUPFD, kept + 1);
        const int beyond = fcntl(STDOUT_FILENO, F_DUPFD, closed + 50);
        closeOneByOne(static_cast<unsigned int>(kept + 1), static_cast<unsigned int>(beyond));
        const auto isOpen = [](int descriptor) { return fcntl(descriptor, F_GETFD) >= 0; };
        _exit(isOpen(kept) && !isOpen(closed) && isOpen(beyond) ? 0 : 1);
    }
    int status = -1;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
}
