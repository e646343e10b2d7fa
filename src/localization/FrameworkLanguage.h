#pragma once

#include "localization/AppLanguage.h"

#include <QLibraryInfo>
#include <QString>
#include <QTranslator>

namespace amberquill {

class Preferences;
class SystemLanguages;

// Applies the interface's language to Qt's own texts (dialogs, fields, key names) and to the formats of
// numbers and dates. Stores an explicit choice in the preferences under "AppleLanguages".
class FrameworkLanguage {
public:
    // `preferences` and `system` outlive this object. `translations` is the folder of Qt's translations.
    FrameworkLanguage(Preferences& preferences, const SystemLanguages& system,
                      QString translations = QLibraryInfo::path(QLibraryInfo::TranslationsPath));
    ~FrameworkLanguage();

    FrameworkLanguage(const FrameworkLanguage&) = delete;
    FrameworkLanguage& operator=(const FrameworkLanguage&) = delete;

    // Needs the application object. With `System`, formats are those of the user's locale if it has the
    // interface's language.
    void apply(AppLanguage language);

private:
    Preferences& preferences_;
    const SystemLanguages& system_;
    QString translations_;
    QTranslator translator_;
};

} // namespace amberquill
