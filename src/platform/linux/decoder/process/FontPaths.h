#pragma once

#include <string>
#include <vector>

namespace amberquill::desktop {

// Reads the configuration of the fonts, and returns what drawing text reads afterwards: the folders of the
// fonts, those of fontconfig's caches and the files of its configuration. Not all are there.
[[nodiscard]] std::vector<std::string> fontPaths();

} // namespace amberquill::desktop
