#pragma once

#include "platform/Preferences.h"

#include <QHash>
#include <QVariant>
#include <functional>

namespace amberquill {

// Preferences in memory.
class MemoryPreferences final : public Preferences {
public:
    [[nodiscard]] std::optional<int> integer(const QString& key) const override {
        return read<int>(key, QMetaType::Int);
    }
    [[nodiscard]] std::optional<bool> boolean(const QString& key) const override {
        return read<bool>(key, QMetaType::Bool);
    }
    [[nodiscard]] std::optional<QString> string(const QString& key) const override {
        return read<QString>(key, QMetaType::QString);
    }
    [[nodiscard]] std::optional<QStringList> stringList(const QString& key) const override {
        return read<QStringList>(key, QMetaType::QStringList);
    }
    [[nodiscard]] bool contains(const QString& key) const { return values_.contains(key); }

    void setInteger(const QString& key, int value) override { store(key, value); }
    void setBoolean(const QString& key, bool value) override { store(key, value); }
    void setString(const QString& key, const QString& value) override { store(key, value); }
    void setStringList(const QString& key, const QStringList& value) override { store(key, value); }
    void remove(const QString& key) override { values_.remove(key); }
    void flush() override { ++flushes; }

    int flushes = 0;

    // Called after each value that is stored.
    std::function<void(const QString& key)> onStored = [](const QString&) {};

private:
    void store(const QString& key, const QVariant& value) {
        values_.insert(key, value);
        onStored(key);
    }

    template<typename Value>
    [[nodiscard]] std::optional<Value> read(const QString& key, QMetaType::Type type) const {
        const QVariant value = values_.value(key);
        return value.typeId() == type ? std::optional(value.value<Value>()) : std::nullopt;
    }

    QHash<QString, QVariant> values_;
};

} // namespace amberquill
