#include "platform/linux/activation/x11/StartupMessage.h"

#include <algorithm>

namespace amberquill::desktop {

namespace {

using namespace Qt::StringLiterals;

// In characters. Without a limit, a name of one megabyte would take fifty thousand events.
constexpr qsizetype longestValue = 512;

// Quotes and escapes the value, so that its content cannot end it or begin another key.
void add(QByteArray& message, const char* key, const QString& value) {
    if (value.isEmpty()) {
        return;
    }
    QByteArray escaped;
    for (const char c : value.left(longestValue).toUtf8()) {
        if (c == '\0') {
            break;
        }
        if (c == '"' || c == '\\') {
            escaped += '\\';
        }
        escaped += c;
    }
    message += ' ';
    message += key;
    message += "=\"" + escaped + '"';
}

// One part of an id, without the characters that separate the parts.
QString idPart(QString text) {
    const auto isPlain = [](QChar c) {
        return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') || (c >= u'0' && c <= u'9') ||
               c == u'.' || c == u'-';
    };
    text.truncate(64);
    std::replace_if(
        text.begin(), text.end(), [&](QChar c) { return !isPlain(c); }, u'_');
    return text;
}

} // namespace

QString startupId(const StartupIdParts& parts) {
    return u"amberquill/%1/%2-%3-%4_TIME%5"_s.arg(idPart(parts.application))
        .arg(parts.process)
        .arg(parts.start)
        .arg(idPart(parts.host))
        .arg(parts.time);
}

QByteArray startupBeginning(const StartupNotice& notice, int screen) {
    QByteArray message = "new:";
    add(message, "ID", notice.id);
    add(message, "NAME", notice.name);
    add(message, "SCREEN", QString::number(screen));
    add(message, "BIN", notice.program);
    add(message, "ICON", notice.icon);
    add(message, "WMCLASS", notice.windowClass);
    add(message, "APPLICATION_ID", notice.entryPath);
    return message;
}

QByteArray startupEnd(const QString& id) {
    QByteArray message = "remove:";
    add(message, "ID", id);
    return message;
}

std::vector<StartupChunk> startupChunks(const QByteArray& message) {
    const QByteArray text = message + '\0';
    std::vector<StartupChunk> chunks;
    for (qsizetype from = 0; from < text.size(); from += qsizetype(StartupChunk().size())) {
        StartupChunk chunk{};
        const QByteArray part = text.mid(from, qsizetype(chunk.size()));
        std::copy(part.begin(), part.end(), chunk.begin());
        chunks.push_back(chunk);
    }
    return chunks;
}

} // namespace amberquill::desktop
