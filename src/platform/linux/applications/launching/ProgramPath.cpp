#include "platform/linux/applications/launching/ProgramPath.h"

#include "platform/linux/environment/BaseFolders.h"

#include <QFile>
#include <algorithm>
#include <sys/stat.h>
#include <unistd.h>

namespace amberquill::desktop {

bool isExecutableFile(const QString& path) {
    const QByteArray name = QFile::encodeName(path);
    struct stat about {};
    return !path.contains(QChar::Null) && stat(name.constData(), &about) == 0 && S_ISREG(about.st_mode) &&
           access(name.constData(), X_OK) == 0;
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

} // namespace amberquill::desktop
