#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <QStringList>

// Desktop entries that make a session start the launcher, by the Desktop Application Autostart Specification.
namespace amberquill::desktop {

// An entry that starts `program`, an absolute path, quoted whatever is in it.
[[nodiscard]] QByteArray autostartEntryFor(const QString& program);

// An entry that stands in front of one of lower precedence and starts nothing.
[[nodiscard]] QByteArray hiddenAutostartEntry();

// Whether a session on a desktop of these names, most exact first, starts what the entry says. Entries that
// are not valid, hidden, for other desktops, or switched off by GNOME's tools are not started.
[[nodiscard]] bool isStartedAtLogin(QByteArrayView entry, const QStringList& currentDesktops);

} // namespace amberquill::desktop
