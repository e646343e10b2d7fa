#pragma once

#include <QString>
#include <QStringList>
#include <optional>

namespace amberquill {

// The user's preferences: typed values by key. A value of another type than the requested one reads as
// absent. If writing fails, the values last until the program ends. Main thread only, except `flush`.
class Preferences {
public:
    Preferences() = default;
    Preferences(const Preferences&) = delete;
    Preferences& operator=(const Preferences&) = delete;
    virtual ~Preferences() = default;

    [[nodiscard]] virtual std::optional<int> integer(const QString& key) const = 0;
    [[nodiscard]] virtual std::optional<bool> boolean(const QString& key) const = 0;
    [[nodiscard]] virtual std::optional<QString> string(const QString& key) const = 0;
    [[nodiscard]] virtual std::optional<QStringList> stringList(const QString& key) const = 0;

    virtual void setInteger(const QString& key, int value) = 0;
    virtual void setBoolean(const QString& key, bool value) = 0;
    virtual void setString(const QString& key, const QString& value) = 0;
    virtual void setStringList(const QString& key, const QStringList& value) = 0;
    virtual void remove(const QString& key) = 0;

    // Returns when all changes are on the disk or have failed. Safe on any thread.
    virtual void flush() = 0;
};

} // namespace amberquill
