#include "platform/linux/decoder/process/Confinement.h"

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

constexpr rlim_t mostOpenFiles = 16; // where it may read fonts, it opens files
// Of processor time, in seconds.
constexpr rlim_t mostProcessorSeconds = (decoderEndurance + longestDecoding).count();

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
    // Processes and threads are not limited: all that the user runs counts. It cannot start processes.
    // The signal at the lower limit tells who started it that it was the limit; at the higher one it is
    // killed.
    return limitMemory() && limit(RLIMIT_CPU, mostProcessorSeconds, mostProcessorSeconds + 1) &&
           limit(RLIMIT_CORE, 0) && limit(RLIMIT_FSIZE, 0) && limit(RLIMIT_NOFILE, mostOpenFiles);
}

} // namespace

bool dropInheritance() {
    for (const int signal : {SIGPROF, SIGXCPU, SIGXFSZ, SIGTERM, SIGINT, SIGHUP}) {
        if (std::signal(signal, SIG_DFL) == SIG_ERR) {
            return false;
        }
    }
    sigset_t none = {};
    ::sigemptyset(&none);
    ::closefrom(STDERR_FILENO + 1); // older kernels have no call for it: it then looks in /proc, or aborts
    return ::sigprocmask(SIG_SETMASK, &none, nullptr) == 0;
}

void offerMemoryFirst() {
    const FileDescriptor score(::open("/proc/self/oom_score_adj", O_WRONLY | O_CLOEXEC));
    constexpr std::string_view highest = "1000";
    if (score.isOpen()) {
        static_cast<void>(::write(score.get(), highest.data(), highest.size()));
    }
}

void keepLittleMemory() {
    // One heap for all threads. In bytes: what is larger has pages of its own, and what is free at the heap's
    // end and larger goes back as well. Both sizes would grow with the largest picture. The pictures of usual
    // icons stay in the heap: new pages for each would take a quarter of the time.
    ::mallopt(M_ARENA_MAX, 1);
    ::mallopt(M_MMAP_THRESHOLD, 2 * 1024 * 1024);
    ::mallopt(M_TRIM_THRESHOLD, 8 * 1024 * 1024);
}

bool confine(FileReading reading) {
    // The user's other programs may look into it through /proc: it holds nothing that they cannot read
    // anyway.
    return ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 && limitResources() && restrictSystemCalls(reading);
}

} // namespace amberquill::desktop
