#pragma once

#include "localization/AppLanguage.h"

#include <QImage>
#include <QString>

namespace amberquill {

// The language's menu title: its own name for itself. For `System`, "automatic" in the interface language.
[[nodiscard]] QString languageTitle(AppLanguage language);

// The picture beside the title: 18 × 12 points with rounded corners and a hairline frame.
[[nodiscard]] QImage languageFlag(AppLanguage language, double devicePixelRatio);

} // namespace amberquill
