#include "localization/FrameworkLanguage.h"

#include "platform/Preferences.h"

#include <QCoreApplication>
#include <QLocale>
#include <utility>

namespace amberquill {

namespace {

// BCP 47.
QString languageCode(AppLanguage language) {
    return language == AppLanguage::Chinese ? QStringLiteral("zh-Hans") : rawValue(language);
}

// The forms of the user's locale for the language in effect: those of its country where it is of that
// language.
QLocale systemLocaleFor(AppLanguage language, const QLocale& spoken) {
    const QLocale system = QLocale::system();
    const bool isSpoken = system.language() == spoken.language() && system.script() == spoken.script();
    const bool hasNone = system.language() == QLocale::C && language == AppLanguage::English;
    return isSpoken || hasNone ? system : spoken;
}

} // namespace

FrameworkLanguage::FrameworkLanguage(Preferences& preferences, const SystemLanguages& system,
                                     QString translations)
    : preferences_(preferences)
    , system_(system)
    , translations_(std::move(translations)) {}

FrameworkLanguage::~FrameworkLanguage() = default;

void FrameworkLanguage::apply(AppLanguage language) {
    const QString key = QStringLiteral("AppleLanguages");
    const AppLanguage inEffect = language == AppLanguage::System ? fromSystem(system_) : language;
    const QString code = languageCode(inEffect);
    const QLocale spoken(code);
    if (language == AppLanguage::System) {
        preferences_.remove(key);
        QLocale::setDefault(systemLocaleFor(inEffect, spoken));
    } else {
        preferences_.setStringList(key, {code});
        QLocale::setDefault(spoken);
    }
    QCoreApplication::removeTranslator(&translator_);
    // Not by the user's locale: of its languages Qt would take the first one that itself has texts in.
    if (translator_.load(spoken, QStringLiteral("qtbase"), QStringLiteral("_"), translations_)) {
        QCoreApplication::installTranslator(&translator_);
    }
}

} // namespace amberquill
