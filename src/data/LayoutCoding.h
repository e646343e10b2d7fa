#pragma once

#include "data/LaunchItem.h"

#include <QByteArray>
#include <QJsonValue>
#include <QString>
#include <QStringList>
#include <variant>

namespace amberquill {

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

// An item as JSON: {"app":{"_0":path}} or {"folder":{"_0":{"id":…,"name":…,"apps":[…]}}}.
Decoded<LaunchItem> decodeItem(const QJsonValue& json, const QStringList& codingPath = {});

// A list of items; one bad item fails the whole.
Decoded<LaunchItems> decodeItems(const QJsonValue& json, const QStringList& codingPath = {});

// The private layout file's text: an array of items. Nesting and size are bounded by the parser.
Decoded<LaunchItems> decodeItems(const QByteArray& text);

// Compact, keys in the order in which the fields are declared, every "/" escaped.
QByteArray encodeItem(const LaunchItem& item);
QByteArray encodeItems(const LaunchItems& items);

} // namespace amberquill
