#pragma once

#include "data/LaunchItem.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <QStringList>
#include <variant>

namespace amberquill {

class JsonReader;

// Why a JSON text is not the value it should be.
struct DecodingError {
    enum class Kind { DataCorrupted, TypeMismatch, KeyNotFound };

    Kind kind = Kind::DataCorrupted;
    QString description;
    QStringList codingPath; // keys and "Index 3" from the outermost value inwards

    bool operator==(const DecodingError&) const = default;
};

template<typename Value>
using Decoded = std::variant<Value, DecodingError>;

// Larger texts are no layouts: a hundred thousand applications take some ten megabytes.
inline constexpr qsizetype largestLayoutText = qsizetype{64} * 1024 * 1024;

// The private layout file's text: an array of items, {"app":{"_0":path}} or
// {"folder":{"_0":{"id":…,"name":…,"apps":[…]}}}. Unknown keys are ignored, of a key that is there twice the
// second counts, and one bad item fails the whole.
Decoded<LaunchItems> decodeItems(QByteArrayView text);

// The same for a list within another value: reads one value, whatever it is.
Decoded<LaunchItems> readItems(JsonReader& reader);

// Compact, keys in the order in which the fields are declared, every "/" escaped.
QByteArray encodeItem(const LaunchItem& item);
QByteArray encodeItems(const LaunchItems& items);

} // namespace amberquill
