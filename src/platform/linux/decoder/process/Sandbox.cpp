#include "platform/linux/decoder/process/Sandbox.h"

#include "platform/linux/files/FileDescriptor.h"

#include <algorithm>
#include <csignal>
#include <fcntl.h>
#include <malloc.h>
#include <string_view>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

namespace amberquill::desktop {

namespace {

constexpr rlim_t maximumOpenFiles = 16; // for fonts
// Of processor time, in seconds.
constexpr rlim_t maximumProcessorSeconds = (decoderProcessorBudget + pictureProcessorBudget).count();

bool limit(__rlimit_resource_t resource, rlim_t soft, rlim_t hard) {
    rlimit present = {};
    if (::getrlimit(resource, &present) != 0) {
        return false;
    }
    const rlimit limits = {std::min(soft, present.rlim_max), std::min(hard, present.rlim_max)};
    return ::setrlimit(resource, &limits) == 0;
}

bool limit(__rlimit_resource_t resource, rlim_t most) {
    return limit(resource, most, most);
}

bool limitMemory() {
#ifdef AMBERQUILL_SANITIZED
    return true; // sanitizers reserve terabytes
#else
    return limit(RLIMIT_AS, decoderMemory);
#endif
}

bool limitResources() {
    // No RLIMIT_NPROC: it counts all processes of the user. System calls prevent new processes.
    // SIGXCPU at the lower limit tells the launcher the reason; at the higher limit comes SIGKILL.
    return limitMemory() && limit(RLIMIT_CPU, maximumProcessorSeconds, maximumProcessorSeconds + 1) &&
           limit(RLIMIT_CORE, 0) && limit(RLIMIT_FSIZE, 0) && limit(RLIMIT_NOFILE, maximumOpenFiles);
}

} // namespace

bool resetInheritedState() {
    for (const int signal : {SIGPROF, SIGXCPU, SIGXFSZ, SIGTERM, SIGINT, SIGHUP}) {
        if (std::signal(signal, SIG_DFL) == SIG_ERR) {
            return false;
        }
    }
    sigset_t none = {};
    ::sigemptyset(&none);
    ::closefrom(STDERR_FILENO + 1); // on older kernels reads /proc, or aborts
    return ::sigprocmask(SIG_SETMASK, &none, nullptr) == 0;
}

void preferOutOfMemoryKill() {
    const FileDescriptor score(::open("/proc/self/oom_score_adj", O_WRONLY | O_CLOEXEC));
    constexpr std::string_view highest = "1000";
    if (score.isOpen()) {
        static_cast<void>(::write(score.get(), highest.data(), highest.size()));
    }
}

void limitHeap() {
    // One heap for all threads. Blocks above the first size have their own pages. Free memory at the heap's
    // end above the second size is returned. By default both sizes grow with the largest picture. Usual icons
    // stay in the heap: new pages for each picture would take a quarter of the time.
    ::mallopt(M_ARENA_MAX, 1);
    ::mallopt(M_MMAP_THRESHOLD, 2 * 1024 * 1024);
    ::mallopt(M_TRIM_THRESHOLD, 8 * 1024 * 1024);
}

bool enterSandbox(FileReading reading) {
    // Stays dumpable: it has no data that the user's other programs cannot read anyway.
    return ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 && limitResources() && restrictSystemCalls(reading);
}

} // namespace amberquill::desktop
