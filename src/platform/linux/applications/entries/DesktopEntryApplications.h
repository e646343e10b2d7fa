// applications/entries/: the applications that the desktop has registered, by the Desktop Entry Specification
// 1.5 and the Desktop Menu Specification. Answers which `.desktop` files there are, which of them the
// launcher lists, under which names, and what a single file says.
//
// - DesktopEntryApplications lists them: begin reading here. The applications folders are read side by side.
// - EntryIndex finds the files and their ids, by names alone.
// - EntryTokens reads the file format. A scan uses nothing else, so that 10,000 entries take 55 ms.
// - DesktopEntry is one entry with all its values, for launching and for icons.
// - EntryLocale chooses the translations. ProgramLookup finds programs for `TryExec` and `Exec`.
//
// An id belongs to the first file in precedence, even if that file is hidden, broken or not an application: a
// file of lower precedence is never listed instead. Bounds: 1 MiB, 50,000 lines, 10,000 keys and 64 KiB per
// line for an entry; 16 levels and a million entries for a folder. Nothing is executed and no value is
// evaluated. A folder that does not answer is left to RootReaders. The log category amberquill.entries names
// each entry that is not listed, with the reason.
#pragma once

#include "platform/RegisteredApplications.h"
#include "platform/common/RootReaders.h"
#include "platform/linux/applications/entries/DesktopEntry.h"
#include "platform/linux/environment/BaseFolders.h"

namespace amberquill::desktop {

// The launcher's own entry, which it never lists.
inline constexpr QByteArrayView ownDesktopId("org.amberquill.Amberquill.desktop");

// The folders of entries, and the user's settings that decide which are listed.
struct EntrySettings {
    DataFolders dataFolders;
    EntryLocale locale;
    QStringList currentDesktops; // the desktop's names, most specific first
    QStringList programFolders;  // for a `TryExec` without a path

    bool operator==(const EntrySettings&) const = default;
};

// From the XDG variables, the locale's, XDG_CURRENT_DESKTOP and PATH.
[[nodiscard]] EntrySettings entrySettingsFromEnvironment(const Environment& environment);

// Whether an entry with these lists is shown on a desktop of these names. The first name that is in
// `onlyShowIn` or `notShowIn` decides. If none is: shown, unless there is an `onlyShowIn`.
[[nodiscard]] bool isShownIn(const QStringList& currentDesktops, const std::optional<QStringList>& onlyShowIn,
                             const std::optional<QStringList>& notShowIn);

// Lists the desktop entries of applications. Each id's file is chosen before any file is read.
class DesktopEntryApplications final : public RegisteredApplications {
public:
    // The readers read the folders side by side, and outlive this object. Null: the calling thread reads.
    explicit DesktopEntryApplications(EntrySettings settings, RootReaders* readers = nullptr);

    // In byte order of the ids.
    using RegisteredApplications::list;
    [[nodiscard]] std::vector<RegisteredApplication> list(ScannedFolders& folders) const override;

    // The `applications` folders.
    [[nodiscard]] QStringList watchedFolders() const override;

    // The id of the entry at `path`. None: it is in none of the folders. Does not touch the disk.
    [[nodiscard]] std::optional<QString> desktopId(const QString& path) const;

    // The name of the entry at `path`, whether it is listed or not. None: not a valid entry.
    [[nodiscard]] std::optional<QString> name(const QString& path) const;

private:
    EntrySettings settings_;
    QStringList folders_;
    RootReaders* readers_;
};

} // namespace amberquill::desktop
