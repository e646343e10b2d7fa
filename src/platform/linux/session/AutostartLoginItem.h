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

// An entry that starts `program`, an absolute path, quoted whatever is in it.
[[nodiscard]] QByteArray autostartEntryFor(const QString& program);

// An entry that stands in front of one of lower precedence and starts nothing.
[[nodiscard]] QByteArray hiddenAutostartEntry();

// Whether a session on a desktop of these names, most exact first, starts what the entry says. Entries that
// are not valid, hidden, for other desktops, or switched off by GNOME's tools are not started.
[[nodiscard]] bool isStartedAtLogin(QByteArrayView entry, const QStringList& currentDesktops);

// Where a session looks for entries to start: the user's folder first, then the system's. They need not
// exist.
[[nodiscard]] QStringList autostartFolders(const Environment& environment);

// The launcher's autostart entry, `org.amberquill.Amberquill.desktop`. It is read each time, because other
// tools switch it too: the first of the folders that has one decides.
class AutostartLoginItem final : public LoginItem {
public:
    struct Settings {
        QStringList folders;         // the user's own first
        QString program;             // the launcher's absolute path
        QStringList currentDesktops; // the desktop's names, most exact first
    };

    // `files` outlives this object.
    AutostartLoginItem(FileSystem& files, Settings settings);

    [[nodiscard]] bool isEnabled() const override;
    void enable() override;

    // The user's entry goes, or one that is hidden stands in front of the system's.
    void disable() override;

private:
    [[nodiscard]] static QString entryIn(const QString& folder);
    void write(const QByteArray& entry);
    [[nodiscard]] std::optional<QByteArray> readEntryIn(const QString& folder) const;

    FileSystem& files_;
    Settings settings_;
};

} // namespace amberquill::desktop
