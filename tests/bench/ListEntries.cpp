// Prints the applications that the launcher lists: id, file, name and the program of the Exec line, each
// followed by a NUL.
#include "platform/linux/applications/entries/DesktopEntryApplications.h"

#include <cstdio>

using namespace amberquill;
using namespace amberquill::desktop;

namespace {

void print(const QString& text) {
    std::fputs(text.toUtf8().constData(), stdout);
    std::fputc('\0', stdout);
}

} // namespace

int main() {
    const DesktopEntryApplications applications(entrySettingsFromEnvironment(processEnvironment()));
    for (const RegisteredApplication& application : applications.list()) {
        const auto entry = readDesktopEntry(application.path, {});
        print(applications.desktopId(application.path).value_or(QString()));
        print(application.path);
        print(application.name);
        print(entry ? entry->exec.section(u' ', 0, 0).remove(u'"') : QString());
    }
    return 0;
}
