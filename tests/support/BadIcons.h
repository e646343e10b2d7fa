#pragma once

#include "support/BadDrawings.h"
#include "support/BadPictures.h"

namespace amberquill {

// All bad icons. Each call makes them anew, which takes about a second. Qt's image plugins write some of
// them.
inline BadIcons badIcons() {
    auto all = badDrawings();
    const auto pictures = badPictures();
    all.insert(all.end(), pictures.begin(), pictures.end());
    return all;
}

} // namespace amberquill
