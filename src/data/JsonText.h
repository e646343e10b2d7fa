#pragma once

#include <QByteArray>
#include <QStringView>

namespace amberquill {

// Appends `text` as a JSON string (RFC 8259): UTF-8 as it is, control characters, quotes, backslashes and
// every "/" escaped. A surrogate without its partner is written as an escape, so that any text can be read
// back unchanged.
void appendJsonString(QByteArray& json, QStringView text);

} // namespace amberquill
