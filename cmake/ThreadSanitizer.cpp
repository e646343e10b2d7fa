// What the thread sanitizer is told in each program that is built with it. TSAN_OPTIONS overrules it.
//
// Qt and the other libraries are not instrumented: what they do to memory does not count, since what orders
// it is not seen. The locks, threads and files that they use are, and with them most hand-overs of our work.
// The program and its tests fork while they have threads, and the child runs another program. A second start
// ends at once, by _exit, while its threads read: nobody waits for those. A second's sleep at the end of each
// of many programs is no help.
extern "C" [[gnu::visibility("default")]] const char* __tsan_default_options();

const char* __tsan_default_options() {
    return "ignore_noninstrumented_modules=1:die_after_fork=0:report_thread_leaks=0:atexit_sleep_ms=20";
}
