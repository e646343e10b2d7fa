// applications/entries/: the applications that a desktop has registered, read from their desktop entries.
#pragma once

#include "platform/RegisteredApplications.h"
#include "platform/common/RootReaders.h"
#include "platform/linux/applications/entries/DesktopEntry.h"
#include "platform/linux/environment/BaseFolders.h"

namespace amberquill::desktop {

// The launcher's own entry, which it never lists.
inline constexpr QByteArrayView ownDesktopId("org.amberquill.Amberquill.desktop");

// Where entries are looked for, and for whom.
struct EntrySettings {
    DataFolders dataFolders;
    EntryLocale locale;
    QStringList currentDesktops; // the desktop's names, most exact first
    QStringList programFolders;  // where a `TryExec` without a path is looked for

    bool operator==(const EntrySettings&) const = default;
};

// From the XDG variables, the locale's, XDG_CURRENT_DESKTOP and PATH.
[[nodiscard]] EntrySettings entrySettingsFromEnvironment(const Environment& environment);

// Whether an entry with these lists is shown on a desktop of these names: the first name that stands in
// `onlyShowIn` or `notShowIn` decides. None of them: shown, unless there is an `onlyShowIn`.
[[nodiscard]] bool isShownIn(const QStringList& currentDesktops, const std::optional<QStringList>& onlyShowIn,
                             const std::optional<QStringList>& notShowIn);

// The desktop entries that are to be listed, by the Desktop Entry Specification 1.5 and the Desktop Menu
// Specification's ids. Which file stands for an id is decided before any is read; one that is hidden, broken
// or not installed makes its id absent and never lets a file of lower precedence through.
class DesktopEntryApplications final : public RegisteredApplications {
public:
    // The readers read the folders side by side, and outlive this object; null: the calling thread does.
    explicit DesktopEntryApplications(EntrySettings settings, RootReaders* readers = nullptr);

    // In byte order of the ids.
    using RegisteredApplications::list;
    [[nodiscard]] std::vector<RegisteredApplication> list(ScannedFolders& folders) const override;

    // The `applications` folders.
    [[nodiscard]] QStringList watchedFolders() const override;

    // The id of the entry at `path`, or none: it is not in one of the folders. Looks nothing up.
    [[nodiscard]] std::optional<QString> desktopId(const QString& path) const;

    // The name of the entry at `path`, whether it is to be listed or not; none: not a valid entry.
    [[nodiscard]] std::optional<QString> name(const QString& path) const;

private:
    EntrySettings settings_;
    QStringList folders_;
    RootReaders* readers_;
};

} // namespace amberquill::desktop
