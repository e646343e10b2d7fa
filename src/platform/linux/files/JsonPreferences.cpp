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

JsonPreferences::Content JsonPreferences::read(const FileSystem& files, const QString& path) {
    auto text = files.readFile(path, maximumBytes);
    if (auto object = text ? objectIn(*text) : std::nullopt) {
        return {std::move(text), *std::move(object)};
    }
    return {};
}

JsonPreferences::JsonPreferences(FileSystem& files, QString path, std::optional<Content> content)
    : files_(files)
    , path_(std::move(path))
    , isLate_(!content) {
    if (content) {
        values_ = std::move(content->values);
        read_ = std::move(content->text);
    }
}

void JsonPreferences::takeLate(Content content) {
    isLate_ = false;
    read_ = std::move(content.text);
    if (file_ && read_) {
        file_->assumeHeld(*read_);
    }
    values_ = content.values;
    const auto sets = std::exchange(sets_, {});
    for (auto set = sets.begin(); set != sets.end(); ++set) {
        if (set.value().isUndefined()) {
            values_.remove(set.key());
        } else {
            values_.insert(set.key(), set.value());
        }
    }
    isChanged_ = values_ != content.values;
    if (isChanged_) {
        save();
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
    if (isLate_) {
        sets_.insert(key, QJsonValue(QJsonValue::Undefined));
    }
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
    if (isLate_) {
        sets_.insert(key, value);
    }
    if (values_.value(key) != value) {
        values_.insert(key, value);
        save();
    } else if (file_) {
        file_->tryAgain();
    }
}

void JsonPreferences::save() {
    isChanged_ = true;
    if (file_ && !isLate_) {
        file_->save(QJsonDocument(values_).toJson());
    }
}

} // namespace amberquill::desktop
