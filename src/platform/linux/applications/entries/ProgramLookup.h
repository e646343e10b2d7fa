#pragma once

#include <QHash>
#include <QString>
#include <QStringList>
#include <optional>

namespace amberquill::desktop {

// The folders of a PATH: absolute ones only. An empty PATH is the system's usual one.
[[nodiscard]] QStringList programFoldersFrom(const QByteArray& path);

// Whether `path` is a regular file that may be executed. Any thread.
[[nodiscard]] bool isExecutableFile(const QString& path);

// The executable file that a command's first word names. An absolute path names itself, a relative path with
// a slash is below `workingDirectory`, and a bare name is looked for in `folders`. None: no such file, or it
// is not executable. Any thread.
[[nodiscard]] std::optional<QString> findProgram(const QString& name, const QStringList& folders,
                                                 const QString& workingDirectory);

// Whether the programs of `TryExec` are installed. Remembers its answers: made anew for every scan.
class ProgramLookup {
public:
    explicit ProgramLookup(QStringList folders)
        : folders_(std::move(folders)) {}

    // `program` is an absolute path, or a bare name that is looked for in the folders. A relative path with a
    // slash is never installed.
    [[nodiscard]] bool isInstalled(const QString& program);

private:
    [[nodiscard]] bool find(const QString& program) const;

    QStringList folders_;
    QHash<QString, bool> answers_;
};

} // namespace amberquill::desktop
