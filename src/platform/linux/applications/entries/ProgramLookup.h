#pragma once

#include <QHash>
#include <QString>
#include <QStringList>

namespace amberquill::desktop {

// The folders of a PATH: absolute ones only. An empty PATH is the system's usual one.
[[nodiscard]] QStringList programFoldersFrom(const QByteArray& path);

// Whether programs are installed. Remembers its answers: made anew for every scan.
class ProgramLookup {
public:
    explicit ProgramLookup(QStringList folders)
        : folders_(std::move(folders)) {}

    // `program` is an absolute path, or a name that is looked for in the folders; a relative path is neither.
    [[nodiscard]] bool isInstalled(const QString& program);

private:
    [[nodiscard]] bool find(const QString& program) const;

    QStringList folders_;
    QHash<QString, bool> answers_;
};

} // namespace amberquill::desktop
