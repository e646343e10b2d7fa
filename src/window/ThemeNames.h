#pragma once

#include "data/BackgroundTheme.h"

#include <QString>

namespace amberquill {

// What a background theme is called in the language in effect.
[[nodiscard]] QString themeName(BackgroundTheme theme);

} // namespace amberquill
