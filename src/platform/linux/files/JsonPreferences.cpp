#include "platform/linux/files/JsonPreferences.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <cmath>
#include <limits>

namespace amberquill::desktop {
namespace {

constexpr qint64 maximumBytes = qint64{1024} * 1024;

std::optional<QJsonObject> readObject(const FileSystem& files, const QString& path) {
    const auto bytes = files.readFile(path, maximumBytes);
    if (!bytes) {
        return std::nullopt;
    }
    const QJsonDocument document = QJsonDocument::fromJson(*bytes);
    if (!document.isObject()) {
        return std::nullopt;
    }
    return document.object();
}

} // namespace

JsonPreferences::JsonPreferences(FileSystem& files, QString path)
    : files_(files)
    , path_(std::move(path)) {
    if (auto object = readObject(files_, path_)) {
        values_ = *std::move(object);
        isOurs_ = true;
        isWritten_ = true;
    }
}

std::optional<int> JsonPreferences::integer(const QString& key) const {
    const QJsonValue value = values_.value(key);
    const double number = value.toDouble();
    if (!value.isDouble() || number != std::trunc(number) || number < std::numeric_limits<int>::min() ||
        number > std::numeric_limits<int>::max()) {
        return std::nullopt;
    }
    return static_cast<int>(number);
}

std::optional<bool> JsonPreferences::boolean(const QString& key) const {
    const QJsonValue value = values_.value(key);
    return value.isBool() ? std::optional(value.toBool()) : std::nullopt;
}

std::optional<QString> JsonPreferences::string(const QString& key) const {
    const QJsonValue value = values_.value(key);
    return value.isString() ? std::optional(value.toString()) : std::nullopt;
}

std::optional<QStringList> JsonPreferences::stringList(const QString& key) const {
    const QJsonValue value = values_.value(key);
    if (!value.isArray()) {
        return std::nullopt;
    }
    QStringList texts;
    for (const QJsonValue text : value.toArray()) {
        if (!text.isString()) {
            return std::nullopt;
        }
        texts.append(text.toString());
    }
    return texts;
}

void JsonPreferences::setInteger(const QString& key, int value) {
    set(key, value);
}

void JsonPreferences::setBoolean(const QString& key, bool value) {
    set(key, value);
}

void JsonPreferences::setString(const QString& key, const QString& value) {
    set(key, value);
}

void JsonPreferences::setStringList(const QString& key, const QStringList& value) {
    set(key, QJsonArray::fromStringList(value));
}

void JsonPreferences::remove(const QString& key) {
    if (values_.contains(key)) {
        values_.remove(key);
        write();
    }
}

void JsonPreferences::set(const QString& key, const QJsonValue& value) {
    if (isWritten_ && values_.value(key) == value) {
        return;
    }
    values_.insert(key, value);
    write();
}

void JsonPreferences::write() {
    if (!isOurs_) {
        files_.setAside(path_); // false where there is none, the usual case
    }
    isWritten_ = files_.writeAtomically(path_, QJsonDocument(values_).toJson());
    isOurs_ = isOurs_ || isWritten_;
}

} // namespace amberquill::desktop
