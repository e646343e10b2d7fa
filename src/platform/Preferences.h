#pragma once

#include <QString>
#include <QStringList>
#include <optional>

namespace amberquill {

// The user's preferences: typed values by key. A value of another type than the one asked for reads as
// absent. Main thread only, but for `flush`. A failed write is silent, and the value holds until the program
// ends.
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

    // Returns when what was set is on the disk, or has failed. Safe on any thread.
    virtual void flush() = 0;
};

class NullPreferences final : public Preferences {
public:
    [[nodiscard]] std::optional<int> integer(const QString&) const override { return std::nullopt; }
    [[nodiscard]] std::optional<bool> boolean(const QString&) const override { return std::nullopt; }
    [[nodiscard]] std::optional<QString> string(const QString&) const override { return std::nullopt; }
    [[nodiscard]] std::optional<QStringList> stringList(const QString&) const override {
        return std::nullopt;
    }
    void setInteger(const QString&, int) override {}
    void setBoolean(const QString&, bool) override {}
    void setString(const QString&, const QString&) override {}
    void setStringList(const QString&, const QStringList&) override {}
    void remove(const QString&) override {}
    void flush() override {}
};

} // namespace amberquill
