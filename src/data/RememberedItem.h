#pragma once

#include "data/LaunchItem.h"

#include <QByteArray>
#include <QByteArrayView>
#include <chrono>
#include <optional>
#include <vector>

namespace amberquill {

// The place of an application that is missing from the layout, or of a folder that had such applications.
// Items are referred to by their ids.
struct RememberedItem {
    QString id = {};
    std::optional<QUuid> folder = {}; // the application's folder; none: it was on the pages
    QString folderName = {};          // of a folder
    QString after = {};               // the previous item, missing or not; empty: it was the first
    QString before = {};              // the next item that was not missing; empty: none
    qsizetype index = 0;              // its place, missing items counted
    std::chrono::sys_seconds since = {};

    bool operator==(const RememberedItem&) const = default;
};

// Larger texts are refused.
inline constexpr qsizetype largestPlacesText = qsizetype{64} * 1024 * 1024;

// The text of the places.json file, JSON (RFC 8259): an object whose "places" is an array of objects. Each
// has the key "app" (a path) or "folder" (a UUID, with a "name"), then "in" (the UUID of the application's
// folder, if it had one), "after" and "before" (item ids), "index" and "since" (ISO 8601, UTC).
QByteArray encodePlaces(const std::vector<RememberedItem>& places);

// None: not such a text. Invalid places are skipped, unknown keys are ignored.
std::optional<std::vector<RememberedItem>> decodePlaces(QByteArrayView text);

} // namespace amberquill
