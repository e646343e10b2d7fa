#include "localization/L.h"

#include "platform/Preferences.h"
#include "platform/SystemLanguages.h"

namespace amberquill {

namespace {

struct LanguageState {
    AppLanguage choice = AppLanguage::System;
    const SystemLanguages* system = nullptr;
};

LanguageState& state() {
    static LanguageState theState;
    return theState;
}

QString inLanguage(const TextRow& row, AppLanguage language) {
    // Rows have no column for `System`.
    const std::u16string_view text = row.at(static_cast<std::size_t>(language) - 1);
    return QString::fromUtf16(text.data(), static_cast<qsizetype>(text.size()));
}

} // namespace

AppLanguage L::language() {
    return state().choice;
}

void L::setLanguage(AppLanguage language) {
    state().choice = language;
}

void L::loadLanguage(const Preferences& preferences) {
    const auto stored = preferences.string(QStringLiteral("appLanguage"));
    setLanguage(stored ? appLanguage(*stored).value_or(AppLanguage::System) : AppLanguage::System);
}

void L::setSystemLanguages(const SystemLanguages* languages) {
    state().system = languages;
}

AppLanguage L::effectiveLanguage() {
    if (state().choice != AppLanguage::System) {
        return state().choice;
    }
    return state().system != nullptr ? fromSystem(*state().system) : AppLanguage::English;
}

QString L::text(TextKey key) {
    return inLanguage(textTable().at(static_cast<std::size_t>(key)), effectiveLanguage());
}

QString L::upToDateMessage(const QString& version) {
    return QStringLiteral("Amberquill ") + version + inLanguage(upToDateEndings(), effectiveLanguage());
}

QString L::importMessage() {
    const AppLanguage language = effectiveLanguage();
    return inLanguage(importLeadIns(), language) + otherApps() + inLanguage(importClosings(), language);
}

} // namespace amberquill
