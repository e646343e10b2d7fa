#pragma once

#include "platform/FileSystem.h"
#include "platform/Preferences.h"
#include "platform/common/WriteBehind.h"

#include <QHash>
#include <QJsonObject>
#include <optional>

namespace amberquill::desktop {

// Preferences in one file that holds one JSON object (RFC 8259). Read once; what is set is written soon, away
// from the main thread and values set together in one write, and the keys that the program does not know
// stay. A file that is there but cannot be read as such an object (over a mebibyte, cut off, another kind of
// value) means defaults, and is set aside before the first write takes its place. A file that is read late is
// not written before; what is set meanwhile is kept over what it holds.
class JsonPreferences final : public Preferences {
public:
    // What the file holds.
    struct Content {
        std::optional<QByteArray> text; // none: there is no file, or no such object in it
        QJsonObject values;
    };

    // Safe on any thread. `path` is absolute.
    [[nodiscard]] static Content read(const FileSystem& files, const QString& path);

    // None: `takeLate` will bring it. `files` outlives this object.
    JsonPreferences(FileSystem& files, QString path, std::optional<Content> content);
    JsonPreferences(FileSystem& files, const QString& path)
        : JsonPreferences(files, path, read(files, path)) {}

    // Once, what the file held that was read late.
    void takeLate(Content content);

    // What is set is written from now on, and what was set before. `queue` outlives this object's use.
    void writeOn(MainQueue& queue);

    [[nodiscard]] std::optional<int> integer(const QString& key) const override;
    [[nodiscard]] std::optional<bool> boolean(const QString& key) const override;
    [[nodiscard]] std::optional<QString> string(const QString& key) const override;
    [[nodiscard]] std::optional<QStringList> stringList(const QString& key) const override;

    void setInteger(const QString& key, int value) override;
    void setBoolean(const QString& key, bool value) override;
    void setString(const QString& key, const QString& value) override;
    void setStringList(const QString& key, const QStringList& value) override;
    void remove(const QString& key) override;
    void flush() override;

private:
    void set(const QString& key, const QJsonValue& value);
    void save();

    FileSystem& files_;
    QString path_;
    QJsonObject values_;
    std::optional<QByteArray> read_; // none: there was no file, or no such object in it, or it is late
    bool isLate_;
    QHash<QString, QJsonValue> sets_; // while it is late, by key; undefined: removed
    std::optional<WriteBehind> file_; // none: values are not written yet
    bool isChanged_ = false;          // there are other values than were read
};

} // namespace amberquill::desktop
