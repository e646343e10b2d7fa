#pragma once

#include "data/LaunchItem.h"
#include "data/RememberedItem.h"

#include <QHash>
#include <chrono>
#include <cstddef>
#include <optional>
#include <vector>

namespace amberquill {

// Remembers the places of applications that are missing from the layout. An application that comes back
// (after an upgrade, with a mount, in the next session) gets its place again: in the same folder, which is
// made again if necessary, and between the same neighbours if they are present.
class PlaceMemory {
public:
    using Date = std::chrono::sys_seconds;

    // An older place is forgotten.
    static constexpr std::chrono::days longest{90};
    // Of more applications, those that have been missing longest are forgotten.
    static constexpr std::size_t mostApplications = 4096;

    PlaceMemory() = default;
    // Takes the places of an earlier run, within the limits above.
    PlaceMemory(std::vector<RememberedItem> remembered, Date now);

    // In the order of the places: the pages first, then folder by folder.
    [[nodiscard]] const std::vector<RememberedItem>& remembered() const { return remembered_; }

    // The layout with those remembered applications put back that are installed again. They are then
    // forgotten. An application is recognised by its path, or else by its file name, unless a missing
    // application of the layout has the same file name: then that one has moved.
    [[nodiscard]] LaunchItems putBack(const LaunchItems& items, const std::vector<AppInfo>& installed);

    // Remembers the applications that are in `before` and not in `after`, except those that have moved.
    // Whether there were any.
    bool remember(const LaunchItems& before, const LaunchItems& after, Date now);

    void clear() { remembered_.clear(); }

private:
    // When each missing application was last present, by id.
    using Missing = QHash<QString, Date>;

    [[nodiscard]] Missing missing() const;
    void record(const LaunchItems& items, const Missing& missing);

    std::vector<RememberedItem> remembered_;
};

} // namespace amberquill
