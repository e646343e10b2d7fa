#pragma once

#include "data/LaunchItem.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <QStringList>
#include <variant>

namespace amberquill {

class JsonReader;

// Why a JSON text could not be decoded.
struct DecodingError {
    enum class Kind { DataCorrupted, TypeMismatch, KeyNotFound };

    Kind kind = Kind::DataCorrupted;
    QString description;
    QStringList codingPath; // keys and "Index 3", from the outermost value to the failed one

    bool operator==(const DecodingError&) const = default;
};

template<typename Value>
using Decoded = std::variant<Value, DecodingError>;

// Larger texts are refused. A hundred thousand applications take about ten megabytes.
inline constexpr qsizetype largestLayoutText = qsizetype{64} * 1024 * 1024;

// The text of the private layout file: an array of items, {"app":{"_0":path}} or
// {"folder":{"_0":{"id":…,"name":…,"apps":[…]}}}. Unknown keys are ignored. If a key occurs twice, the second
// one counts. One bad item fails the whole.
Decoded<LaunchItems> decodeItems(QByteArrayView text);

// The same for a list inside another value. Always reads exactly one value.
Decoded<LaunchItems> readItems(JsonReader& reader);

// Compact, keys in the order of the fields' declaration, every "/" escaped.
QByteArray encodeItem(const LaunchItem& item);
QByteArray encodeItems(const LaunchItems& items);

} // namespace amberquill
