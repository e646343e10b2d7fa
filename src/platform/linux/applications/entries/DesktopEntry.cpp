#include "platform/linux/applications/entries/DesktopEntry.h"

#include "platform/linux/applications/entries/EntryTokens.h"
#include "platform/linux/files/RegularFile.h"

#include <fcntl.h>

namespace amberquill::desktop {

std::optional<DesktopEntry> parseDesktopEntry(QByteArrayView bytes, const EntryLocale& locale) {
    const auto tokens = tokenizeEntry(bytes, locale);
    if (!tokens || !tokens->isValidApplication()) {
        return std::nullopt;
    }
    return DesktopEntry{.name = tokens->text(EntryKey::Name),
                        .exec = tokens->text(EntryKey::Exec),
                        .tryExec = tokens->text(EntryKey::TryExec),
                        .icon = tokens->text(EntryKey::Icon),
                        .path = tokens->text(EntryKey::Path),
                        .startupWmClass = tokens->text(EntryKey::StartupWmClass),
                        .onlyShowIn = tokens->list(EntryKey::OnlyShowIn),
                        .notShowIn = tokens->list(EntryKey::NotShowIn),
                        .startupNotify = tokens->boolean(EntryKey::StartupNotify),
                        .terminal = tokens->isTrue(EntryKey::Terminal),
                        .dbusActivatable = tokens->isTrue(EntryKey::DbusActivatable),
                        .noDisplay = tokens->isTrue(EntryKey::NoDisplay),
                        .hidden = tokens->isTrue(EntryKey::Hidden)};
}

std::optional<DesktopEntry> readDesktopEntry(const QString& path, const EntryLocale& locale) {
    if (!path.startsWith(QLatin1Char('/')) || path.contains(QChar::Null)) {
        return std::nullopt;
    }
    QByteArray buffer;
    const auto bytes = readRegularFile(AT_FDCWD, path.toUtf8().constData(), maximumEntryBytes, buffer);
    return bytes ? parseDesktopEntry(*bytes, locale) : std::nullopt;
}

} // namespace amberquill::desktop
