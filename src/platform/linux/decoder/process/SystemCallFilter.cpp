#include "platform/linux/decoder/process/SystemCallFilter.h"

#include "platform/linux/decoder/channel/DecodingMessages.h"

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <initializer_list>
#include <memory>
#include <sched.h>
#include <seccomp.h>
#include <span>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace amberquill::desktop {

namespace {

using Filter = std::unique_ptr<void, decltype(&seccomp_release)>;
using Argument = scmp_arg_cmp;

// The filter sees 64 bits of each argument. The upper half of an int argument is undefined.
constexpr scmp_datum_t intBits = 0xffff'ffff;

Argument equals(unsigned int index, int value) {
    return {index, SCMP_CMP_MASKED_EQ, intBits, static_cast<unsigned int>(value)};
}

Argument isNull(unsigned int index) {
    return {index, SCMP_CMP_EQ, 0, 0};
}

// No bit of `bits` is set.
Argument lacks(unsigned int index, int bits) {
    return {index, SCMP_CMP_MASKED_EQ, static_cast<unsigned int>(bits), 0};
}

// All bits of `bits` are set.
Argument has(unsigned int index, int bits) {
    return {index, SCMP_CMP_MASKED_EQ, static_cast<unsigned int>(bits), static_cast<unsigned int>(bits)};
}

class Rules {
public:
    explicit Rules(const Filter& filter)
        : filter_(filter.get()) {}

    void allow(std::initializer_list<int> calls) {
        for (const int call : calls) {
            add(SCMP_ACT_ALLOW, call, {});
        }
    }
    // Allows the call if all conditions hold.
    void allow(int call, std::initializer_list<Argument> conditions) {
        add(SCMP_ACT_ALLOW, call, conditions);
    }
    void fail(int error, std::initializer_list<int> calls) {
        for (const int call : calls) {
            add(SCMP_ACT_ERRNO(static_cast<unsigned int>(error)), call, {});
        }
    }
    void fail(int error, int call, std::initializer_list<Argument> conditions) {
        add(SCMP_ACT_ERRNO(static_cast<unsigned int>(error)), call, conditions);
    }

    [[nodiscard]] bool areSet() const { return areSet_; }

private:
    void add(std::uint32_t action, int call, std::span<const Argument> conditions) {
        areSet_ = areSet_ &&
                  seccomp_rule_add_array(filter_, action, call, static_cast<unsigned int>(conditions.size()),
                                         conditions.data()) == 0;
    }

    void* filter_;
    bool areSet_ = true;
};

void allowMemory(Rules& rules) {
    rules.allow({SCMP_SYS(brk), SCMP_SYS(madvise), SCMP_SYS(mremap), SCMP_SYS(munmap)});
    // No executable memory: all libraries are loaded by now.
    rules.allow(SCMP_SYS(mmap), {lacks(2, PROT_EXEC)});
    rules.allow(SCMP_SYS(mprotect), {lacks(2, PROT_EXEC)});
}

// Libraries use threads, such as for the filters of a drawing.
void allowThreads(Rules& rules) {
    constexpr int threadFlags = CLONE_VM | CLONE_FS | CLONE_FILES | CLONE_SYSVSEM | CLONE_SIGHAND |
                                CLONE_THREAD | CLONE_SETTLS | CLONE_PARENT_SETTID | CLONE_CHILD_CLEARTID;
    rules.allow(SCMP_SYS(clone), {equals(0, threadFlags)});
    // A filter cannot see its flags, which are behind a pointer. The C library falls back to clone.
    rules.fail(ENOSYS, {SCMP_SYS(clone3)});
    rules.allow({SCMP_SYS(exit), SCMP_SYS(futex), SCMP_SYS(gettid), SCMP_SYS(rseq),
                 SCMP_SYS(sched_getaffinity), SCMP_SYS(sched_yield), SCMP_SYS(set_robust_list),
                 SCMP_SYS(sigaltstack)});
    // One for each of Qt's threads.
    rules.allow({SCMP_SYS(eventfd2)});
    rules.allow(SCMP_SYS(prctl), {equals(0, PR_SET_NAME)});
    // Other options, such as names of memory, fail.
    rules.fail(EINVAL, SCMP_SYS(prctl), {{0, SCMP_CMP_NE, PR_SET_NAME, 0}});
}

void allowOwnProcess(Rules& rules) {
    rules.allow({SCMP_SYS(clock_getres), SCMP_SYS(clock_gettime), SCMP_SYS(clock_nanosleep),
                 SCMP_SYS(exit_group), SCMP_SYS(getpid), SCMP_SYS(getrandom), SCMP_SYS(getrusage),
                 SCMP_SYS(gettimeofday), SCMP_SYS(nanosleep), SCMP_SYS(restart_syscall),
                 SCMP_SYS(rt_sigaction), SCMP_SYS(rt_sigprocmask), SCMP_SYS(rt_sigreturn), SCMP_SYS(sysinfo),
                 SCMP_SYS(time)});
    // For the limit of each picture.
    rules.allow({SCMP_SYS(setitimer)});
    // For abort().
    rules.allow(SCMP_SYS(tgkill), {equals(0, ::getpid())});
    // Reading its own limits, not setting them.
    rules.allow(SCMP_SYS(prlimit64), {equals(0, 0), isNull(2)});
}

void allowMessages(Rules& rules) {
    rules.allow(SCMP_SYS(recvmsg), {equals(0, decoderSocket)});
    rules.allow(SCMP_SYS(sendmsg), {equals(0, decoderSocket)});
    rules.allow({SCMP_SYS(close), SCMP_SYS(fstat), SCMP_SYS(lseek), SCMP_SYS(poll), SCMP_SYS(ppoll)});
    rules.allow(SCMP_SYS(fcntl), {equals(1, F_GET_SEALS)});
    rules.allow(SCMP_SYS(fcntl), {equals(1, F_GETFD)});
    rules.allow(SCMP_SYS(fcntl), {equals(1, F_GETFL)});
    // Libraries print warnings to the outputs, which are /dev/null.
    for (const int output : {STDOUT_FILENO, STDERR_FILENO}) {
        rules.allow(SCMP_SYS(write), {equals(0, output)});
        rules.allow(SCMP_SYS(writev), {equals(0, output)});
    }
}

// Fontconfig tries to write a cache, and librsvg asks for the working directory when it aborts.
void failOthers(Rules& rules) {
    rules.fail(EACCES, {SCMP_SYS(chmod), SCMP_SYS(getcwd), SCMP_SYS(link), SCMP_SYS(linkat), SCMP_SYS(mkdir),
                        SCMP_SYS(mkdirat), SCMP_SYS(rename), SCMP_SYS(renameat), SCMP_SYS(renameat2),
                        SCMP_SYS(unlink), SCMP_SYS(unlinkat), SCMP_SYS(utimensat)});
}

// Libraries look for optional files.
void failReading(Rules& rules) {
    rules.fail(EACCES, {SCMP_SYS(access), SCMP_SYS(faccessat), SCMP_SYS(faccessat2), SCMP_SYS(lstat),
                        SCMP_SYS(newfstatat), SCMP_SYS(open), SCMP_SYS(openat), SCMP_SYS(readlink),
                        SCMP_SYS(readlinkat), SCMP_SYS(stat), SCMP_SYS(statx)});
}

void allowReading(Rules& rules) {
    // Other flags would open for more than reading.
    constexpr int readingFlags = O_CLOEXEC | O_DIRECTORY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_LARGEFILE;
    rules.allow(SCMP_SYS(openat), {lacks(2, ~readingFlags)});
    rules.allow(SCMP_SYS(open), {lacks(1, ~readingFlags)});
    rules.allow(SCMP_SYS(fcntl), {equals(1, F_SETFD)});
    for (const int flag : {O_WRONLY, O_RDWR, O_CREAT}) {
        rules.fail(EACCES, SCMP_SYS(openat), {has(2, flag)});
        rules.fail(EACCES, SCMP_SYS(open), {has(1, flag)});
    }
    rules.allow({SCMP_SYS(access), SCMP_SYS(faccessat), SCMP_SYS(faccessat2), SCMP_SYS(fadvise64),
                 SCMP_SYS(fstatfs), SCMP_SYS(getdents64), SCMP_SYS(lstat), SCMP_SYS(newfstatat),
                 SCMP_SYS(pread64), SCMP_SYS(read), SCMP_SYS(readlink), SCMP_SYS(readlinkat), SCMP_SYS(stat),
                 SCMP_SYS(statfs), SCMP_SYS(statx)});
}

#ifdef AMBERQUILL_SANITIZED
// Sanitizers check whether memory is mapped by writing it to a pipe.
void allowSanitizers(Rules& rules) {
    rules.allow({SCMP_SYS(pipe2), SCMP_SYS(write)});
}
#endif

} // namespace

bool restrictSystemCalls(FileReading reading) {
    const Filter filter(seccomp_init(SCMP_ACT_KILL_PROCESS), &seccomp_release);
    if (!filter) {
        return false;
    }
    // Calls of other architectures end the process too. The rules apply to all threads.
    if (seccomp_attr_set(filter.get(), SCMP_FLTATR_ACT_BADARCH, SCMP_ACT_KILL_PROCESS) != 0 ||
        seccomp_attr_set(filter.get(), SCMP_FLTATR_CTL_TSYNC, 1) != 0) {
        return false;
    }
    Rules rules(filter);
    allowMemory(rules);
    allowThreads(rules);
    allowOwnProcess(rules);
    allowMessages(rules);
    failOthers(rules);
#ifdef AMBERQUILL_SANITIZED
    allowSanitizers(rules);
#endif
    if (reading == FileReading::Allowed) {
        allowReading(rules);
    } else {
        failReading(rules);
    }
    return rules.areSet() && seccomp_load(filter.get()) == 0;
}

} // namespace amberquill::desktop
