#pragma once

#include <QByteArrayView>
#include <QString>

namespace amberquill {

// Decodes valid UTF-8 and keeps a byte order mark at the start, which Qt drops: in a file name it is a
// character like any other, and without it the path would be wrong.
[[nodiscard]] inline QString textOfUtf8(QByteArrayView bytes) {
    QString text = QString::fromUtf8(bytes);
    if (bytes.startsWith("\xEF\xBB\xBF")) {
        text.prepend(QChar(QChar::ByteOrderMark));
    }
    return text;
}

} // namespace amberquill
