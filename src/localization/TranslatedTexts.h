#pragma once

#include <QString>
#include <cstddef>

namespace amberquill {

// Texts whose translations are in translations/*.ts, in the language in effect. Main thread only.

// What the updater's dialogs say, apart from the texts that they share with the rest of the program.
enum class UpdateText {
    FoundTitle,
    FoundMessage, // %1: the new version, %2: this one
    ReleaseNotes,
    Skip,
    RemindLater,
    Install,
    PackageManaged,
    OpenReleasePage,
    Checking,
    Downloading,
    Progress, // %1 of %2, both with their units
    Pause,
    Paused,
    Resume,
    Installing,
    InstalledTitle,
    InstalledMessage, // %1: the new version
    RestartNow,
    Later,
    FailedTitle,
    // Why it failed.
    FeedNotFetched,
    FeedUnreadable,
    NoDownload,
    DownloadFailed,
    NotStored,
    NoKey,
    NoSignature,
    WrongSignature,
    WrongLength,
    OlderVersion,
    NotReplaceable,
};

inline constexpr std::size_t updateTextCount = static_cast<std::size_t>(UpdateText::NotReplaceable) + 1;

[[nodiscard]] QString updateText(UpdateText text);

// What a screen reader says about something that has no text on the screen.

// "Games, folder, 5 apps".
[[nodiscard]] QString spokenFolder(const QString& name, qsizetype apps);

// "Page 2 of 6".
[[nodiscard]] QString spokenPage(int number, int count);

// The button that empties the search field.
[[nodiscard]] QString spokenClear();

} // namespace amberquill
