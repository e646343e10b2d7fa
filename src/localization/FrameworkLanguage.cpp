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

// The user's locale if it has the interface's language, so that formats are those of the user's country;
// otherwise the language's own locale.
QLocale systemLocaleFor(AppLanguage language, const QLocale& interface) {
    const QLocale system = QLocale::system();
    const bool isSame = system.language() == interface.language() && system.script() == interface.script();
    const bool isUnset = system.language() == QLocale::C && language == AppLanguage::English;
    return isSame || isUnset ? system : interface;
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
    const QLocale interface(code);
    if (language == AppLanguage::System) {
        preferences_.remove(key);
        QLocale::setDefault(systemLocaleFor(inEffect, interface));
    } else {
        preferences_.setStringList(key, {code});
        QLocale::setDefault(interface);
    }
    QCoreApplication::removeTranslator(&translator_);
    // With the user's locale, Qt would choose among its languages by the texts that Qt has.
    if (translator_.load(interface, QStringLiteral("qtbase"), QStringLiteral("_"), translations_)) {
        QCoreApplication::installTranslator(&translator_);
    }
}

} // namespace amberquill
