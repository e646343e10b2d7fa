// A program that runs from an image. Tests kill it during its replacement, or end it:
//
//     replacing_program replace <its path> <new file> <number of the step to be killed at>
//     replacing_program restart <its path>
#include "platform/linux/installation/AppImageInstaller.h"

#include <QList>
#include <csignal>
#include <cstdlib>
#include <unistd.h>

using namespace amberquill::desktop;

namespace {

int replace(AppImageInstaller& installer, const char* file) {
    const bool isReplaced = installer.stage(QString::fromUtf8(file)) && installer.replace();
    return isReplaced ? EXIT_SUCCESS : EXIT_FAILURE;
}

// Prints that it is ready, then ends when its input ends.
int restart(AppImageInstaller& installer) {
    if (!installer.startAgainAfterExit()) {
        return EXIT_FAILURE;
    }
    char byte = '.';
    if (::write(STDOUT_FILENO, &byte, 1) != 1) {
        return EXIT_FAILURE;
    }
    while (::read(STDIN_FILENO, &byte, 1) > 0) {
    }
    return EXIT_SUCCESS;
}

} // namespace

int main(int argc, char** argv) {
    const QList<QByteArray> arguments(argv + 1, argv + argc);
    const int killedAt = arguments.value(3, "-1").toInt();
    std::vector<QByteArray> environment;
    for (char** entry = environ; *entry != nullptr; ++entry) {
        environment.emplace_back(*entry);
    }
    AppImageInstaller installer(environment, QString::fromUtf8(arguments.value(1)),
                                [killedAt](AppImageInstaller::Step step) {
                                    if (static_cast<int>(step) == killedAt) {
                                        ::raise(SIGKILL);
                                    }
                                });
    return arguments.value(0) == "replace" ? replace(installer, arguments.value(2).constData())
                                           : restart(installer);
}
