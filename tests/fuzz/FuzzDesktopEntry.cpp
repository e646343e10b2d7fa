// Desktop entries of any bytes: the reader ends and keeps the contract of its header.
#include "Require.h"
#include "platform/linux/applications/entries/DesktopEntry.h"
#include "platform/linux/applications/entries/EntryTokens.h"

#include <cstdint>

using namespace amberquill::desktop;

namespace {

// The text is valid UTF-16 and has no NUL.
void requireText(const QString& text) {
    require(text.isValidUtf16() && !text.contains(QChar::Null));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const EntryLocale locale = entryLocaleFor({"de_AT.UTF-8@euro", "fr"});
    const QByteArrayView bytes(data, static_cast<qsizetype>(size));
    const auto entry = parseDesktopEntry(bytes, locale);
    const auto tokens = tokenizeEntry(bytes, locale);
    // The quick and the full reader agree on the validity and the name of an entry.
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
