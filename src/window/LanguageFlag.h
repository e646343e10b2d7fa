#pragma once

#include "localization/AppLanguage.h"

#include <QImage>
#include <QString>

namespace amberquill {

// How a language is offered in a menu: its own name for itself, or the wish to follow the system in the
// language in effect.
[[nodiscard]] QString languageTitle(AppLanguage language);

// The picture beside it, 18 × 12 points with rounded corners and a hairline frame.
[[nodiscard]] QImage languageFlag(AppLanguage language, double devicePixelRatio);

} // namespace amberquill
