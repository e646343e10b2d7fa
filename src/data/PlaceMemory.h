#pragma once

#include "data/LaunchItem.h"
#include "data/RememberedItem.h"

#include <QHash>
#include <chrono>
#include <cstddef>
#include <optional>
#include <vector>

namespace amberquill {

// Remembers where applications stood that are gone from the layout, so that those that come back (with the
// end of an upgrade, with a mount, in the next session) take their places again: in the same folder, which is
// made again if it went, and between the same neighbours, as far as they are there.
class PlaceMemory {
public:
    using Date = std::chrono::sys_seconds;

    // After so long a place is forgotten.
    static constexpr std::chrono::days longest{90};
    // More applications are not remembered: those that went first are forgotten first.
    static constexpr std::size_t mostApplications = 4096;

    PlaceMemory() = default;
    // As remembered earlier, but for what is too old now, and too much.
    PlaceMemory(std::vector<RememberedItem> remembered, Date now);

    // In the order of the places: the pages first, then folder by folder.
    [[nodiscard]] const std::vector<RememberedItem>& remembered() const { return remembered_; }

    // The layout with the remembered applications put back that are installed again, by their paths or else
    // by their file names. They are no longer remembered then. A new file name that an application of the
    // layout has that is not installed is that one's: it has moved.
    [[nodiscard]] LaunchItems putBack(const LaunchItems& items, const std::vector<AppInfo>& installed);

    // Remembers the applications of `before` that are not in `after`, but for those that have moved. Whether
    // there were any.
    bool remember(const LaunchItems& before, const LaunchItems& after, Date now);

    void clear() { remembered_.clear(); }

private:
    // The applications that are gone, and since when.
    using Gone = QHash<QString, Date>;

    [[nodiscard]] Gone gone() const;
    void place(const LaunchItems& items, const Gone& gone);

    std::vector<RememberedItem> remembered_;
};

} // namespace amberquill
