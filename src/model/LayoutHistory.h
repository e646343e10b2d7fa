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

// Copies of earlier layouts, as files that an import takes: of the layout before the first change of each of
// the user's days, and before what replaces it as a whole. They are written away from the main thread to
// `layout-history` beside the layout, and carry their number in the name: the newest `mostCopies` are kept,
// whatever the clock did meanwhile. Other files there are left alone. What cannot be written is given up;
// nobody is told. Main thread only, but for `flush`.
class LayoutHistory {
public:
    enum class Reason { Day, Import, Reset, Sort };

    static constexpr std::size_t mostCopies = 30;

    struct Layout {
        QByteArray text; // as in the private layout file
        int columns = 0;
        int rows = 0;
    };

    // `folder` is where applications keep what the user would miss, `home` the user's own home folder. Both
    // services outlive this object and the work it has posted.
    LayoutHistory(MainQueue& queue, FileSystem& files, const QString& folder, const QString& home);

    // Keeps a copy of the layout, soon; for `Reason::Day` only where the newest copy is not of today. A
    // layout without items is not copied.
    void keep(Layout layout, Reason reason);

    // Writes on this thread, which may be any, what waits.
    void flush();

private:
    class Writer;

    MainQueue& queue_;
    std::shared_ptr<Writer> writer_; // shared with the work under way
    std::optional<QDate> lastDay_;   // of the newest copy that was asked for and has not failed
    Context context_;
};

} // namespace amberquill
