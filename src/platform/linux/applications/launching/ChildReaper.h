#pragma once

#include "platform/Context.h"
#include "platform/linux/files/FileDescriptor.h"

#include <QObject>
#include <sys/types.h>

namespace amberquill {
class MainQueue;
}

namespace amberquill::desktop {

// Takes note of the end of our child processes, so that none stays behind as a zombie. It handles no signal:
// the children of anything else in the program are left to who started them. Main thread only.
class ChildReaper final : public QObject {
    Q_OBJECT

public:
    explicit ChildReaper(MainQueue& queue);

    // `process` becomes readable at the child's end; where it is not open, the child is looked after now and
    // then instead.
    void watch(pid_t child, FileDescriptor process);

private:
    void watchByLooking(pid_t child);

    MainQueue& queue_;
    Context context_;
};

} // namespace amberquill::desktop
