#pragma once

#include <QString>
#include <array>

namespace amberquill {

// What the updater's dialogs say, beside the texts that they share with the rest of the program.
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

// In the language in effect. Main thread only.
[[nodiscard]] QString updateText(UpdateText text);

} // namespace amberquill
