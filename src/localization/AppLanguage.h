#pragma once

#include <QString>
#include <array>
#include <optional>

namespace amberquill {

class SystemLanguages;

// The languages of the interface, in the order of the language menu.
enum class AppLanguage {
    System,
    English,
    Italian,
    Spanish,
    French,
    German,
    Chinese, // Simplified, also for systems in Traditional Chinese
    Japanese,
};

inline constexpr std::array allAppLanguages = {
    AppLanguage::System, AppLanguage::English, AppLanguage::Italian, AppLanguage::Spanish,
    AppLanguage::French, AppLanguage::German,  AppLanguage::Chinese, AppLanguage::Japanese,
};

// The stored form of a language: "system", "en", "it", "es", "fr", "de", "zh" or "ja".
QString rawValue(AppLanguage language);

// The language with exactly this stored form, or none.
std::optional<AppLanguage> appLanguage(const QString& rawValue);

// The language to use for `System`: the first of the system's languages that the interface has, by the first
// two characters of the tag, or else English. Never `System`.
AppLanguage fromSystem(const SystemLanguages& languages);

} // namespace amberquill
