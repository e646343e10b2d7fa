// Default options of the thread sanitizer; TSAN_OPTIONS overrides them.
//
// ignore_noninstrumented_modules: Qt and other libraries are not instrumented, so the sanitizer does not see
// how they order their memory accesses. die_after_fork: the program and its tests fork while they have
// threads; the child runs another program. report_thread_leaks: a second start ends by _exit while its
// threads read. atexit_sleep_ms: the default of a second would delay each of many test programs.
extern "C" [[gnu::visibility("default")]] const char* __tsan_default_options();

const char* __tsan_default_options() {
    return "ignore_noninstrumented_modules=1:die_after_fork=0:report_thread_leaks=0:atexit_sleep_ms=20";
}
