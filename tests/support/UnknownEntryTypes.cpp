#include "support/UnknownEntryTypes.h"

#include <dirent.h>
#include <dlfcn.h>

namespace amberquill {

namespace {

thread_local bool typesAreUnknown = false;

} // namespace

UnknownEntryTypes::UnknownEntryTypes() {
    typesAreUnknown = true;
}

UnknownEntryTypes::~UnknownEntryTypes() {
    typesAreUnknown = false;
}

} // namespace amberquill

// Takes the place of the C library's function in the whole executable.
extern "C" dirent* readdir(DIR* stream) {
    using Function = dirent* (*)(DIR*);
    static const auto original = reinterpret_cast<Function>(::dlsym(RTLD_NEXT, "readdir"));
    dirent* const entry = original(stream);
    if (entry != nullptr && amberquill::typesAreUnknown) {
        entry->d_type = DT_UNKNOWN;
    }
    return entry;
}
