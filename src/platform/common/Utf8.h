#pragma once

#include <QByteArrayView>
#include <QString>

namespace amberquill {

// The text of bytes that are valid UTF-8, all of it: a byte order mark at the start, which Qt takes for none
// of the text, is a letter of a file's name as any other, and without it the path leads nowhere.
[[nodiscard]] inline QString textOfUtf8(QByteArrayView bytes) {
    QString text = QString::fromUtf8(bytes);
    if (bytes.startsWith("\xEF\xBB\xBF")) {
        text.prepend(QChar(QChar::ByteOrderMark));
    }
    return text;
}

} // namespace amberquill
