// Runs a program as on a kernel without one of the system calls:
//
//     refused_call NAME PROGRAM ARGUMENT...

#include <cerrno>
#include <seccomp.h>
#include <unistd.h>

int main(int argc, char** argv) {
    constexpr int failed = 99;
    const scmp_filter_ctx filter = ::seccomp_init(SCMP_ACT_ALLOW);
    if (argc > 2 && filter != nullptr &&
        ::seccomp_rule_add(filter, SCMP_ACT_ERRNO(ENOSYS), ::seccomp_syscall_resolve_name(argv[1]), 0) == 0 &&
        ::seccomp_load(filter) == 0) {
        ::execv(argv[2], argv + 2);
    }
    return failed;
}
