#pragma once

#include "platform/Context.h"

#include <QByteArray>
#include <QDate>
#include <QString>
#include <memory>
#include <optional>

namespace amberquill {

class FileSystem;
class MainQueue;

// Copies of earlier layouts as exchange files, which can be imported. A copy is made before the first change
// of a day (in the user's time zone) and before an import, a reset or a sort. The copies are written in the
// background to `layout-history` beside the layout. Their names hold a number, by which the newest
// `mostCopies` are kept even if the clock goes back. Other files there are left alone. A copy that cannot be
// written is dropped. Main thread only, except `flush`.
class LayoutHistory {
public:
    enum class Reason { Day, Import, Reset, Sort };

    static constexpr std::size_t mostCopies = 30;

    struct Layout {
        QByteArray text; // as in the private layout file
        int columns = 0;
        int rows = 0;
    };

    // `folder` is the folder of the applications' data, `home` the user's home folder. Both services outlive
    // this object and the work it has posted.
    LayoutHistory(MainQueue& queue, FileSystem& files, const QString& folder, const QString& home);

    // Writes a copy of the layout soon; for `Reason::Day` only if the newest copy is not of today. An empty
    // layout is not copied.
    void keep(Layout layout, Reason reason);

    // Writes the waiting copies on this thread. Any thread.
    void flush();

private:
    class Writer;

    MainQueue& queue_;
    std::shared_ptr<Writer> writer_; // shared with running work
    std::optional<QDate> lastDay_;   // of the newest requested copy that has not failed
    Context context_;
};

} // namespace amberquill
