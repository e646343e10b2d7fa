#pragma once

#include "platform/FileSystem.h"
#include "platform/Preferences.h"
#include "platform/common/WriteBehind.h"

#include <QHash>
#include <QJsonObject>
#include <optional>

namespace amberquill::desktop {

// Preferences in a file with one JSON object (RFC 8259). The file is read once. Changes are written soon, on
// another thread; values that are set together are one write. Unknown keys are kept. An unreadable file
// (larger than a mebibyte, truncated, not an object) gives defaults, and is set aside before the first write.
// If the file is read late, nothing is written before it is read, and values that were set meanwhile take
// precedence.
class JsonPreferences final : public Preferences {
public:
    // The content of the file.
    struct Content {
        std::optional<QByteArray> text; // none: no file, or an unreadable one
        QJsonObject values;
    };

    // Safe on any thread. `path` is absolute.
    [[nodiscard]] static Content read(const FileSystem& files, const QString& path);

    // No content: pass it to `takeLate` later. `files` outlives this object.
    JsonPreferences(FileSystem& files, QString path, std::optional<Content> content);
    JsonPreferences(FileSystem& files, const QString& path)
        : JsonPreferences(files, path, read(files, path)) {}

    // Takes the content of a file that was read late. Called once.
    void takeLate(Content content);

    // Starts writing, also of the values that have been set before. `queue` outlives this object's use.
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
    std::optional<QByteArray> read_; // the file's text; none: no file, an unreadable one, or not read yet
    bool isLate_;
    QHash<QString, QJsonValue> sets_; // set before the file was read, by key; undefined: removed
    std::optional<WriteBehind> file_; // none: writing has not started
    bool isChanged_ = false;          // the values differ from the file's
};

} // namespace amberquill::desktop
