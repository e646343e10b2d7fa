#pragma once

#include "support/BadDrawings.h"
#include "support/BadPictures.h"

namespace amberquill {

// All of them. Made anew by each call, which takes about a second; Qt's image plugins write some.
inline BadIcons badIcons() {
    auto all = badDrawings();
    const auto pictures = badPictures();
    all.insert(all.end(), pictures.begin(), pictures.end());
    return all;
}

} // namespace amberquill
