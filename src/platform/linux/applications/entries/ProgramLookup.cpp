#include "platform/linux/applications/entries/ProgramLookup.h"

#include "platform/linux/environment/BaseFolders.h"

#include <sys/stat.h>
#include <unistd.h>

namespace amberquill::desktop {
namespace {

bool isProgram(const QString& path) {
    const QByteArray bytes = path.toUtf8();
    struct stat status = {};
    return ::access(bytes.constData(), X_OK) == 0 && ::stat(bytes.constData(), &status) == 0 &&
           S_ISREG(status.st_mode);
}

} // namespace

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
    if (program.startsWith(QLatin1Char('/'))) {
        return isProgram(program);
    }
    if (program.isEmpty() || program.contains(QLatin1Char('/'))) {
        return false;
    }
    return std::any_of(folders_.begin(), folders_.end(),
                       [&](const QString& folder) { return isProgram(pathBelow(folder, program)); });
}

} // namespace amberquill::desktop
