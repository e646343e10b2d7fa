#pragma once

#include <QString>
#include <array>
#include <optional>

namespace amberquill {

// The colour of the wash over the backdrop, in the order in which they are offered.
enum class BackgroundTheme { Blue, Purple, Green };

inline constexpr std::array allBackgroundThemes = {BackgroundTheme::Blue, BackgroundTheme::Purple,
                                                   BackgroundTheme::Green};

// The text under which a theme is stored: "blue", "purple" or "green".
QString rawValue(BackgroundTheme theme);

// The theme stored under exactly this text, or none.
std::optional<BackgroundTheme> backgroundTheme(const QString& rawValue);

} // namespace amberquill
