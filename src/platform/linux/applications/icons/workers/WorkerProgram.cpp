#include "platform/linux/applications/icons/workers/WorkerProgram.h"

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <array>

namespace amberquill::desktop {

namespace {

constexpr std::array workerVariables{
    // Fonts.
    "FONTCONFIG_FILE",
    "FONTCONFIG_PATH",
    "FONTCONFIG_SYSROOT",
    "HOME",
    "XDG_CACHE_HOME",
    "XDG_CONFIG_HOME",
    "XDG_DATA_DIRS",
    "XDG_DATA_HOME",
    // Language.
    "LANG",
    "LC_ALL",
    "LC_CTYPE",
    // Libraries, and the loaders of pictures in drawings.
    "GDK_PIXBUF_MODULE_FILE",
    "LD_LIBRARY_PATH",
    "QT_PLUGIN_PATH",
};

} // namespace

WorkerProgram installedWorkerProgram(const QString& launcher, const Environment& environment) {
    WorkerProgram program;
    if (launcher.isEmpty()) {
        return program; // no path, rather than one in the working directory
    }
    const QString folder = QFileInfo(launcher).path();
    for (const char* const place : {".", AMBERQUILL_WORKER_FOLDER}) {
        const QString path =
            folder + QLatin1Char('/') + QLatin1String(place) + QLatin1String("/amberquill-icons");
        program.paths.push_back(QFile::encodeName(QDir::cleanPath(path)).toStdString());
    }
    for (const char* const name : workerVariables) {
        if (const auto value = environment(name)) {
            program.environment.push_back(std::string(name) + '=' + value->toStdString());
        }
    }
    return program;
}

} // namespace amberquill::desktop
