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

} // namespace

FrameworkLanguage::FrameworkLanguage(Preferences& preferences, QString translations)
    : preferences_(preferences)
    , translations_(std::move(translations)) {}

FrameworkLanguage::~FrameworkLanguage() = default;

void FrameworkLanguage::apply(AppLanguage language) {
    const QString key = QStringLiteral("AppleLanguages");
    QLocale locale = QLocale::system();
    if (language == AppLanguage::System) {
        preferences_.remove(key);
    } else {
        const QString code = languageCode(language);
        preferences_.setStringList(key, {code});
        locale = QLocale(code);
    }
    QLocale::setDefault(locale);
    QCoreApplication::removeTranslator(&translator_);
    if (translator_.load(locale, QStringLiteral("qtbase"), QStringLiteral("_"), translations_)) {
        QCoreApplication::installTranslator(&translator_);
    }
}

} // namespace amberquill
