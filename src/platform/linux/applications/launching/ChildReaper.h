#pragma once

#include "platform/Context.h"
#include "platform/linux/files/FileDescriptor.h"

#include <QObject>
#include <sys/types.h>

namespace amberquill {
class MainQueue;
}

namespace amberquill::desktop {

// Reaps the child processes it is given, so that none stays a zombie. Handles no SIGCHLD, so it does not
// touch the children of other parts of the program. Main thread only.
class ChildReaper final : public QObject {
    Q_OBJECT

public:
    explicit ChildReaper(MainQueue& queue);

    // `process` is the child's processDescriptor(), which becomes readable at the child's end. If it is not
    // open, the child is polled.
    void watch(pid_t child, FileDescriptor process);

private:
    void poll(pid_t child);

    MainQueue& queue_;
    Context context_;
};

} // namespace amberquill::desktop
