#include "platform/linux/files/JsonPreferences.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <cmath>
#include <limits>
#include <utility>

namespace amberquill::desktop {
namespace {

constexpr qint64 maximumBytes = qint64{1024} * 1024;

std::optional<QJsonObject> objectIn(const QByteArray& text) {
    const QJsonDocument document = QJsonDocument::fromJson(text);
    return document.isObject() ? std::optional(document.object()) : std::nullopt;
}

} // namespace

JsonPreferences::JsonPreferences(FileSystem& files, QString path)
    : files_(files)
    , path_(std::move(path)) {
    auto text = files_.readFile(path_, maximumBytes);
    if (auto object = text ? objectIn(*text) : std::nullopt) {
        values_ = *std::move(object);
        read_ = std::move(text);
    }
}

void JsonPreferences::writeOn(MainQueue& queue) {
    file_.emplace(queue, files_, path_, maximumBytes);
    if (read_) {
        file_->assumeHeld(*read_);
    }
    if (isChanged_) {
        save();
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
        save();
    }
}

void JsonPreferences::flush() {
    if (file_) {
        file_->flush();
    }
}

void JsonPreferences::set(const QString& key, const QJsonValue& value) {
    if (values_.value(key) != value) {
        values_.insert(key, value);
        save();
    } else if (file_) {
        file_->tryAgain();
    }
}

void JsonPreferences::save() {
    isChanged_ = true;
    if (file_) {
        file_->save(QJsonDocument(values_).toJson());
    }
}

} // namespace amberquill::desktop
