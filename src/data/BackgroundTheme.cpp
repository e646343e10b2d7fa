#include "data/BackgroundTheme.h"

#include <cstddef>

namespace amberquill {

namespace {

constexpr std::array<const char*, allBackgroundThemes.size()> rawValues = {"blue", "purple", "green"};

} // namespace

QString rawValue(BackgroundTheme theme) {
    return QString::fromLatin1(rawValues.at(static_cast<std::size_t>(theme)));
}

std::optional<BackgroundTheme> backgroundTheme(const QString& rawValue) {
    for (std::size_t i = 0; i < rawValues.size(); ++i) {
        if (rawValue == QLatin1StringView(rawValues.at(i))) {
            return allBackgroundThemes.at(i);
        }
    }
    return std::nullopt;
}

} // namespace amberquill
