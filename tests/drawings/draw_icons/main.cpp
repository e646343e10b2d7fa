// Draws icon files as the launcher does:
//   draw_icons FOLDER EDGE...
// Reads the files' absolute paths, one per line. Writes the picture of the Nth, counted from 0, to
// FOLDER/N-EDGE.png, or no file if there is no picture.
#include "platform/linux/applications/icons/LinuxApplicationIcons.h"
#include "platform/linux/applications/icons/workers/IconWorkerPool.h"
#include "platform/linux/applications/icons/workers/WorkerProgram.h"
#include "support/TemporaryTree.h"

#include <QCoreApplication>
#include <cstdio>
#include <string>

namespace {

using namespace amberquill;

int drawAll(const QStringList& arguments) {
    const TemporaryTree tree;
    // In the build tree, beside the launcher.
    const auto launcher = QCoreApplication::applicationDirPath() + QStringLiteral("/../amberquill");
    desktop::IconWorkerPool workers(
        {.program = desktop::installedWorkerProgram(launcher, desktop::processEnvironment())});
    const desktop::LinuxApplicationIcons icons(
        {.baseFolders = {}, .theme = {}, .cacheFolder = tree.path("cache"), .version = {}, .locale = {}},
        workers);
    QFile input;
    if (!input.open(stdin, QIODevice::ReadOnly)) {
        return 1;
    }
    const auto paths = input.readAll().split('\n');
    for (qsizetype number = 0; number < paths.size(); ++number) {
        if (paths[number].isEmpty()) {
            continue;
        }
        const auto name = "applications/" + std::to_string(number) + ".desktop";
        const auto entry = tree.write(
            name, "[Desktop Entry]\nType=Application\nName=Icon\nExec=true\nIcon=" + paths[number] + "\n");

        for (const auto& edge : arguments.mid(2)) {
            const auto image = icons.image(entry, edge.toInt());
            const auto file = QStringLiteral("%1/%2-%3.png").arg(arguments[1]).arg(number).arg(edge);
            if (!image.isNull() && !image.save(file)) {
                std::fprintf(stderr, "%s cannot be written\n", qUtf8Printable(file));
                return 1;
            }
        }
    }
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const auto arguments = QCoreApplication::arguments();
    if (arguments.size() < 3) {
        std::fputs("usage: draw_icons FOLDER EDGE... <PATHS\n", stderr);
        return 2;
    }
    return drawAll(arguments);
}
