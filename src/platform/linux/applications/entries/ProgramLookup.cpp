#include "platform/linux/applications/entries/ProgramLookup.h"

#include "platform/linux/environment/BaseFolders.h"

#include <algorithm>
#include <sys/stat.h>
#include <unistd.h>

namespace amberquill::desktop {

QStringList programFoldersFrom(const QByteArray& path) {
    QStringList folders;
    for (const QByteArray& part :
         (path.isEmpty() ? QByteArray("/usr/local/bin:/usr/bin:/bin") : path).split(':')) {
        if (const auto folder = absolutePath(part); folder && !folders.contains(*folder)) {
            folders.append(*folder);
        }
    }
    return folders;
}

bool isExecutableFile(const QString& path) {
    const QByteArray bytes = path.toUtf8();
    struct stat status = {};
    return !path.contains(QChar::Null) && ::access(bytes.constData(), X_OK) == 0 &&
           ::stat(bytes.constData(), &status) == 0 && S_ISREG(status.st_mode);
}

std::optional<QString> findProgram(const QString& name, const QStringList& folders,
                                   const QString& workingDirectory) {
    QStringList candidates;
    if (name.startsWith(u'/')) {
        candidates = {name};
    } else if (name.contains(u'/')) {
        candidates = {pathBelow(workingDirectory, name)};
    } else if (!name.isEmpty()) {
        for (const QString& folder : folders) {
            candidates += pathBelow(folder, name);
        }
    }
    const auto found = std::find_if(candidates.begin(), candidates.end(), isExecutableFile);
    return found == candidates.end() ? std::nullopt : std::optional(*found);
}

bool ProgramLookup::isInstalled(const QString& program) {
    const auto known = answers_.constFind(program);
    if (known != answers_.constEnd()) {
        return *known;
    }
    const bool answer = find(program);
    answers_.insert(program, answer);
    return answer;
}

bool ProgramLookup::find(const QString& program) const {
    if (program.startsWith(u'/')) {
        return isExecutableFile(program);
    }
    if (program.isEmpty() || program.contains(u'/')) {
        return false;
    }
    return std::any_of(folders_.begin(), folders_.end(),
                       [&](const QString& folder) { return isExecutableFile(pathBelow(folder, program)); });
}

} // namespace amberquill::desktop
