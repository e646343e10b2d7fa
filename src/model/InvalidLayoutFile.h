#pragma once

#include "localization/L.h"

#include <QString>

namespace amberquill {

// A file that was to be imported is no layout.
struct InvalidLayoutFile {
    // For the user, in the interface language.
    [[nodiscard]] static QString errorDescription() { return L::invalidLayoutFile(); }
};

} // namespace amberquill
