#pragma once

#include "platform/FileSystem.h"
#include "platform/Preferences.h"

#include <QJsonObject>

namespace amberquill::desktop {

// Preferences in one file that holds one JSON object (RFC 8259). Read once; each value that is set is written
// at once, unless it is what the file holds, and the keys that the program does not know stay. A file that is
// there but cannot be read as such an object (over a mebibyte, cut off, another kind of value) means
// defaults, and is set aside before the first write takes its place.
class JsonPreferences final : public Preferences {
public:
    // `path` is absolute. `files` outlives this object.
    JsonPreferences(FileSystem& files, QString path);

    [[nodiscard]] std::optional<int> integer(const QString& key) const override;
    [[nodiscard]] std::optional<bool> boolean(const QString& key) const override;
    [[nodiscard]] std::optional<QString> string(const QString& key) const override;
    [[nodiscard]] std::optional<QStringList> stringList(const QString& key) const override;

    void setInteger(const QString& key, int value) override;
    void setBoolean(const QString& key, bool value) override;
    void setString(const QString& key, const QString& value) override;
    void setStringList(const QString& key, const QStringList& value) override;
    void remove(const QString& key) override;

private:
    void set(const QString& key, const QJsonValue& value);
    void write();

    FileSystem& files_;
    QString path_;
    QJsonObject values_;
    bool isOurs_ = false;    // the file was read, or written by us
    bool isWritten_ = false; // the file holds these values
};

} // namespace amberquill::desktop
