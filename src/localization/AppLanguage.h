#pragma once

#include <QString>
#include <array>
#include <optional>

namespace amberquill {

class SystemLanguages;

// The languages of the interface, in the order in which they are offered.
enum class AppLanguage {
    System,
    English,
    Italian,
    Spanish,
    French,
    German,
    Chinese, // simplified; every Chinese system language leads here
    Japanese,
};

inline constexpr std::array allAppLanguages = {
    AppLanguage::System, AppLanguage::English, AppLanguage::Italian, AppLanguage::Spanish,
    AppLanguage::French, AppLanguage::German,  AppLanguage::Chinese, AppLanguage::Japanese,
};

// The text under which a language is stored: "system", "en", "it", "es", "fr", "de", "zh" or "ja".
QString rawValue(AppLanguage language);

// The language stored under exactly this text, or none.
std::optional<AppLanguage> appLanguage(const QString& rawValue);

// The language that following the system means: the first of the system's languages that the interface
// speaks, by the first two characters of its tag; English where there is none. Never `System`.
AppLanguage fromSystem(const SystemLanguages& languages);

} // namespace amberquill
