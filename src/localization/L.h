// localization/: the interface language and all texts of the program.
#pragma once

#include "localization/AppLanguage.h"
#include "localization/TextTable.h"

#include <QString>

namespace amberquill {

class Preferences;

// The texts of the launcher in the language in effect, looked up at each call. Main thread only.
class L {
public:
    L() = delete;

    // The user's choice. `System` is stored as such, so that the interface follows the system's changes.
    static AppLanguage language();
    static void setLanguage(AppLanguage language);

    // Reads the choice from the preferences; a missing or unknown value is `System`.
    static void loadLanguage(const Preferences& preferences);

    // The provider for `System`, asked at each lookup; null: `System` is English. It outlives its use.
    static void setSystemLanguages(const SystemLanguages* languages);

    // The language in effect: never `System`.
    static AppLanguage effectiveLanguage();

    static QString about() { return text(TextKey::About); }
    static QString hide() { return text(TextKey::Hide); }
    static QString quit() { return text(TextKey::Quit); }
    static QString edit() { return text(TextKey::Edit); }
    static QString undo() { return text(TextKey::Undo); }
    static QString cut() { return text(TextKey::Cut); }
    static QString copy() { return text(TextKey::Copy); }
    static QString paste() { return text(TextKey::Paste); }
    static QString selectAll() { return text(TextKey::SelectAll); }
    static QString close() { return text(TextKey::Close); }
    static QString grid() { return text(TextKey::Grid); }
    static QString background() { return text(TextKey::Background); }
    static QString languageLabel() { return text(TextKey::LanguageLabel); }
    static QString automatic() { return text(TextKey::Automatic); }
    static QString sortByName() { return text(TextKey::SortByName); }
    static QString resetLayout() { return text(TextKey::ResetLayout); }
    static QString exportLayout() { return text(TextKey::ExportLayout); }
    static QString importLayout() { return text(TextKey::ImportLayout); }
    static QString rescan() { return text(TextKey::Rescan); }
    static QString openAtLogin() { return text(TextKey::OpenAtLogin); }
    static QString newFolder() { return text(TextKey::NewFolder); }
    static QString otherApps() { return text(TextKey::OtherApps); }
    static QString search() { return text(TextKey::Search); }
    static QString noResults() { return text(TextKey::NoResults); }
    static QString emptyFolder() { return text(TextKey::EmptyFolder); }
    static QString resetTitle() { return text(TextKey::ResetTitle); }
    static QString resetMessage() { return text(TextKey::ResetMessage); }
    static QString reset() { return text(TextKey::Reset); }
    static QString cancel() { return text(TextKey::Cancel); }
    static QString settings() { return text(TextKey::Settings); }
    static QString visibility() { return text(TextKey::Visibility); }
    static QString showInDock() { return text(TextKey::ShowInDock); }
    static QString showInMenuBar() { return text(TextKey::ShowInMenuBar); }
    static QString visibilityHint() { return text(TextKey::VisibilityHint); }
    static QString checkForUpdates() { return text(TextKey::CheckForUpdates); }
    static QString upToDate() { return text(TextKey::UpToDate); }
    static QString checkAutomatically() { return text(TextKey::CheckAutomatically); }
    static QString toggleLauncher() { return text(TextKey::ToggleLauncher); }
    static QString exportFileName() { return text(TextKey::ExportFileName); }
    static QString exportFailed() { return text(TextKey::ExportFailed); }
    static QString importTitle() { return text(TextKey::ImportTitle); }
    static QString importButton() { return text(TextKey::ImportButton); }
    static QString importFailed() { return text(TextKey::ImportFailed); }
    static QString invalidLayoutFile() { return text(TextKey::InvalidLayoutFile); }

    static QString upToDateMessage(const QString& version);
    static QString importMessage();

private:
    static QString text(TextKey key);
};

} // namespace amberquill
