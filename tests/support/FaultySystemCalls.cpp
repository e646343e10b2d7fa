#include "support/FaultySystemCalls.h"

#include <cerrno>
#include <dirent.h>
#include <dlfcn.h>
#include <unistd.h>

namespace amberquill {

namespace {

thread_local bool typesAreUnknown = false;
thread_local bool flushFails = false;

} // namespace

UnknownEntryTypes::UnknownEntryTypes() {
    typesAreUnknown = true;
}

UnknownEntryTypes::~UnknownEntryTypes() {
    typesAreUnknown = false;
}

FailingFlush::FailingFlush() {
    flushFails = true;
}

FailingFlush::~FailingFlush() {
    flushFails = false;
}

} // namespace amberquill

// These replace the C library's functions in the whole executable.

extern "C" dirent* readdir(DIR* stream) {
    using Function = dirent* (*)(DIR*);
    static const auto original = reinterpret_cast<Function>(::dlsym(RTLD_NEXT, "readdir"));
    dirent* const entry = original(stream);
    if (entry != nullptr && amberquill::typesAreUnknown) {
        entry->d_type = DT_UNKNOWN;
    }
    return entry;
}

extern "C" int fsync(int file) {
    using Function = int (*)(int);
    static const auto original = reinterpret_cast<Function>(::dlsym(RTLD_NEXT, "fsync"));
    if (amberquill::flushFails) {
        errno = EIO;
        return -1;
    }
    return original(file);
}
