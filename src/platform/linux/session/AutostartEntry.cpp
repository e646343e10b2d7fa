#include "platform/linux/session/AutostartEntry.h"

#include "platform/linux/applications/entries/DesktopEntryApplications.h"
#include "platform/linux/applications/entries/EntryTokens.h"

namespace amberquill::desktop {
namespace {

constexpr const char* heading =
    "[Desktop Entry]\nType=Application\nName=Amberquill\nIcon=org.amberquill.Amberquill\n";

// One argument of an `Exec` line: quoted, its per cent signs no field codes.
QString quotedArgument(const QString& argument) {
    QString quoted(QLatin1Char('"'));
    for (const QChar character : argument) {
        if (QStringView(u"\"`$\\").contains(character)) {
            quoted += QLatin1Char('\\');
        }
        quoted += character;
        if (character == QLatin1Char('%')) {
            quoted += character;
        }
    }
    return quoted + QLatin1Char('"');
}

// The value of a key: its backslashes and line breaks escaped.
QString stringValue(QString text) {
    return text.replace(QLatin1Char('\\'), QLatin1String("\\\\"))
        .replace(QLatin1Char('\n'), QLatin1String("\\n"))
        .replace(QLatin1Char('\r'), QLatin1String("\\r"))
        .replace(QLatin1Char('\t'), QLatin1String("\\t"));
}

} // namespace

QByteArray autostartEntryFor(const QString& program) {
    return heading + QByteArray("Exec=") + stringValue(quotedArgument(program)).toUtf8() + '\n';
}

QByteArray hiddenAutostartEntry() {
    return heading + QByteArray("Hidden=true\n");
}

bool isStartedAtLogin(QByteArrayView entry, const QStringList& currentDesktops) {
    const auto tokens = tokenizeEntry(entry, entryLocaleFor({}));
    return tokens && tokens->isValidApplication() && !tokens->isTrue(EntryKey::Hidden) &&
           tokens->boolean(EntryKey::GnomeAutostartEnabled).value_or(true) &&
           isShownIn(currentDesktops, tokens->list(EntryKey::OnlyShowIn), tokens->list(EntryKey::NotShowIn));
}

} // namespace amberquill::desktop
