// Desktop entries of any bytes: the reader ends, and what it answers keeps what its header promises.
#include "Require.h"
#include "platform/linux/applications/entries/DesktopEntry.h"
#include "platform/linux/applications/entries/EntryTokens.h"

#include <cstdint>

using namespace amberquill::desktop;

namespace {

// A text that was read is text: it comes back from UTF-8 as it was, and a C string holds all of it.
void requireText(const QString& text) {
    require(text.isValidUtf16() && !text.contains(QChar::Null));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const EntryLocale locale = entryLocaleFor({"de_AT.UTF-8@euro", "fr"});
    const QByteArrayView bytes(data, static_cast<qsizetype>(size));
    const auto entry = parseDesktopEntry(bytes, locale);
    const auto tokens = tokenizeEntry(bytes, locale);
    // The quick look and the full reading agree on what is an entry and on its name.
    const bool isEntry = tokens && tokens->isValidApplication();
    require(isEntry == entry.has_value());
    if (!entry) {
        return 0;
    }
    require(!entry->name.trimmed().isEmpty() && entry->name == tokens->text(EntryKey::Name));
    require(!entry->exec.isEmpty() || entry->dbusActivatable);
    require(entry->noDisplay == tokens->isTrue(EntryKey::NoDisplay));
    require(entry->hidden == tokens->isTrue(EntryKey::Hidden));
    for (const QString& text :
         {entry->name, entry->exec, entry->tryExec, entry->icon, entry->path, entry->startupWmClass}) {
        requireText(text);
    }
    for (const auto& list : {entry->onlyShowIn, entry->notShowIn}) {
        for (const QString& part : list.value_or(QStringList())) {
            require(!part.isEmpty());
            requireText(part);
        }
    }
    return 0;
}
