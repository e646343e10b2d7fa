#pragma once

#include "localization/AppLanguage.h"

#include <QLibraryInfo>
#include <QString>
#include <QTranslator>

namespace amberquill {

class Preferences;

// Makes the texts that are not the program's own (those of Qt's dialogs and fields) and the forms of numbers
// and dates follow the interface language. The choice is kept in the preferences as well, under
// "AppleLanguages", for as long as there is one.
class FrameworkLanguage {
public:
    // `preferences` outlives this object; `translations` is the folder of Qt's own.
    explicit FrameworkLanguage(Preferences& preferences,
                               QString translations = QLibraryInfo::path(QLibraryInfo::TranslationsPath));
    ~FrameworkLanguage();

    FrameworkLanguage(const FrameworkLanguage&) = delete;
    FrameworkLanguage& operator=(const FrameworkLanguage&) = delete;

    // Needs the application object. `System` returns to the user's locale.
    void apply(AppLanguage language);

private:
    Preferences& preferences_;
    QString translations_;
    QTranslator translator_;
};

} // namespace amberquill
