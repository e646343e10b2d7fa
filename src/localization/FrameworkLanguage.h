#pragma once

#include "localization/AppLanguage.h"

#include <QLibraryInfo>
#include <QString>
#include <QTranslator>

namespace amberquill {

class Preferences;
class SystemLanguages;

// Makes the texts that are not the program's own (those of Qt's dialogs, fields and key names) and the forms
// of numbers and dates follow the language of the interface's texts. The choice is kept in the preferences as
// well, under "AppleLanguages", for as long as there is one.
class FrameworkLanguage {
public:
    // `preferences` and `system` outlive this object; `translations` is the folder of Qt's own.
    FrameworkLanguage(Preferences& preferences, const SystemLanguages& system,
                      QString translations = QLibraryInfo::path(QLibraryInfo::TranslationsPath));
    ~FrameworkLanguage();

    FrameworkLanguage(const FrameworkLanguage&) = delete;
    FrameworkLanguage& operator=(const FrameworkLanguage&) = delete;

    // Needs the application object. `System` is the language that it leads to, with the forms of the user's
    // locale where that is of this language.
    void apply(AppLanguage language);

private:
    Preferences& preferences_;
    const SystemLanguages& system_;
    QString translations_;
    QTranslator translator_;
};

} // namespace amberquill
