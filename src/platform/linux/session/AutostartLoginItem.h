#pragma once

#include "platform/FileSystem.h"
#include "platform/LoginItem.h"
#include "platform/linux/environment/Environment.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <QStringList>
#include <optional>

// Desktop entries that make a session start the launcher, by the Desktop Application Autostart Specification.

namespace amberquill::desktop {

// An entry that starts `program`, an absolute path of any characters.
[[nodiscard]] QByteArray autostartEntryFor(const QString& program);

// An entry that overrides entries of lower precedence and starts nothing.
[[nodiscard]] QByteArray hiddenAutostartEntry();

// Whether a session on the desktop of these names (the most specific first) starts the entry's program. False
// for entries that are invalid, hidden, for other desktops, or switched off by GNOME's tools.
[[nodiscard]] bool isStartedAtLogin(QByteArrayView entry, const QStringList& currentDesktops);

// The folders of autostart entries: the user's first, then the system's. They need not exist.
[[nodiscard]] QStringList autostartFolders(const Environment& environment);

// The launcher's autostart entry, `org.amberquill.Amberquill.desktop`. The first folder that has the entry
// decides. The entry is read each time, because other tools switch it, too.
class AutostartLoginItem final : public LoginItem {
public:
    struct Settings {
        QStringList folders;         // the user's own first
        QString program;             // the launcher's absolute path
        QStringList currentDesktops; // the desktop's names, the most specific first
    };

    // `files` outlives this object.
    AutostartLoginItem(FileSystem& files, Settings settings);

    [[nodiscard]] bool isEnabled() const override;
    void enable() override;

    // Removes the user's entry, or replaces it by a hidden one if the system has an entry.
    void disable() override;

private:
    [[nodiscard]] static QString entryIn(const QString& folder);
    void write(const QByteArray& entry);
    [[nodiscard]] std::optional<QByteArray> readEntryIn(const QString& folder) const;

    FileSystem& files_;
    Settings settings_;
};

} // namespace amberquill::desktop
