#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace amberquill {

// A text in each of the seven languages, in the order of AppLanguage without `System`.
using TextRow = std::array<std::u16string_view, 7>;

// The texts of the launcher.
enum class TextKey {
    About,
    Hide,
    Quit,
    Edit,
    Undo,
    Cut,
    Copy,
    Paste,
    SelectAll,
    Close,
    Grid,
    Background,
    LanguageLabel,
    Automatic,
    SortByName,
    ResetLayout,
    ExportLayout,
    ImportLayout,
    Rescan,
    OpenAtLogin,
    NewFolder,
    OtherApps,
    Search,
    NoResults,
    EmptyFolder,
    ResetTitle,
    ResetMessage,
    Reset,
    Cancel,
    Settings,
    Visibility,
    ShowInDock,
    ShowInMenuBar,
    VisibilityHint,
    CheckForUpdates,
    UpToDate,
    CheckAutomatically,
    ToggleLauncher,
    ExportFileName,
    ExportFailed,
    ImportTitle,
    ImportButton,
    ImportFailed,
    InvalidLayoutFile,
};

using TextTable = std::array<TextRow, static_cast<std::size_t>(TextKey::InvalidLayoutFile) + 1>;

const TextTable& textTable();

// The text after "Amberquill" and the version.
const TextRow& upToDateEndings();

// The import message before and after the name of the folder for other applications.
const TextRow& importLeadIns();
const TextRow& importClosings();

} // namespace amberquill
