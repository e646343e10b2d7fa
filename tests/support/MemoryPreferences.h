#pragma once

#include "platform/Preferences.h"

#include <QHash>
#include <QVariant>

namespace amberquill {

// Preferences that live as long as the test.
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

    void setInteger(const QString& key, int value) override { values_.insert(key, value); }
    void setBoolean(const QString& key, bool value) override { values_.insert(key, value); }
    void setString(const QString& key, const QString& value) override { values_.insert(key, value); }

private:
    template<typename Value>
    [[nodiscard]] std::optional<Value> read(const QString& key, QMetaType::Type type) const {
        const QVariant value = values_.value(key);
        return value.typeId() == type ? std::optional(value.value<Value>()) : std::nullopt;
    }

    QHash<QString, QVariant> values_;
};

} // namespace amberquill
