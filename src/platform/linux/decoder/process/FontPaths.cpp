#include "platform/linux/decoder/process/FontPaths.h"

#include <fontconfig/fontconfig.h>

namespace amberquill::desktop {

namespace {

void append(std::vector<std::string>& paths, FcStrList* list) {
    if (list == nullptr) {
        return;
    }
    while (const FcChar8* const path = FcStrListNext(list)) {
        paths.emplace_back(reinterpret_cast<const char*>(path));
    }
    FcStrListDone(list);
}

} // namespace

std::vector<std::string> fontPaths() {
    std::vector<std::string> paths;
    if (FcInit() == FcTrue) {
        append(paths, FcConfigGetFontDirs(nullptr));
        append(paths, FcConfigGetCacheDirs(nullptr));
        append(paths, FcConfigGetConfigFiles(nullptr));
    }
    return paths;
}

} // namespace amberquill::desktop
