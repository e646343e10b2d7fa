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
    return DesktopEntry{.name = tokens->text(EntryKey::name),
                        .exec = tokens->text(EntryKey::exec),
                        .tryExec = tokens->text(EntryKey::tryExec),
                        .icon = tokens->text(EntryKey::icon),
                        .path = tokens->text(EntryKey::path),
                        .startupWmClass = tokens->text(EntryKey::startupWmClass),
                        .onlyShowIn = tokens->list(EntryKey::onlyShowIn),
                        .notShowIn = tokens->list(EntryKey::notShowIn),
                        .startupNotify = tokens->boolean(EntryKey::startupNotify),
                        .terminal = tokens->isTrue(EntryKey::terminal),
                        .dbusActivatable = tokens->isTrue(EntryKey::dbusActivatable),
                        .noDisplay = tokens->isTrue(EntryKey::noDisplay),
                        .hidden = tokens->isTrue(EntryKey::hidden)};
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
