#pragma once

#include <QString>
#include <array>
#include <cstddef>
#include <optional>

namespace amberquill {

// The colour over the backdrop, in the order of the menu.
enum class BackgroundTheme { Blue, Purple, Green };

inline constexpr std::array allBackgroundThemes = {BackgroundTheme::Blue, BackgroundTheme::Purple,
                                                   BackgroundTheme::Green};

// The text that stands for a theme in the preferences: "blue", "purple" or "green".
inline QString rawValue(BackgroundTheme theme) {
    constexpr std::array<const char*, allBackgroundThemes.size()> texts = {"blue", "purple", "green"};
    return QString::fromLatin1(texts.at(static_cast<std::size_t>(theme)));
}

// The theme with exactly this text.
inline std::optional<BackgroundTheme> backgroundTheme(const QString& text) {
    for (const BackgroundTheme theme : allBackgroundThemes) {
        if (rawValue(theme) == text) {
            return theme;
        }
    }
    return std::nullopt;
}

} // namespace amberquill
