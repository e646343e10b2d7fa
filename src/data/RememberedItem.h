#pragma once

#include "data/LaunchItem.h"

#include <QByteArray>
#include <QByteArrayView>
#include <chrono>
#include <optional>
#include <vector>

namespace amberquill {

// Where an application stood that is gone from the layout, or a folder that such applications stood in. Items
// are named by their identities.
struct RememberedItem {
    QString id = {};
    std::optional<QUuid> folder = {}; // that an application stood in; none: it stood on the pages
    QString folderName = {};          // of a folder
    QString after = {};               // the item before it, gone ones included; empty: it was the first
    QString before = {};              // the next item behind it that was there; empty: none
    qsizetype index = 0;              // its place, gone ones counted
    std::chrono::sys_seconds since = {};

    bool operator==(const RememberedItem&) const = default;
};

// Larger texts are none of these.
inline constexpr qsizetype largestPlacesText = qsizetype{64} * 1024 * 1024;

// The text of the places.json file, JSON (RFC 8259): an object whose "places" is an array of objects, each
// with the keys "app" (its path) or "folder" (its UUID, with its "name"), "in" (the UUID of the folder, where
// there is one), "after", "before" (identities), "index" and "since" (ISO 8601, UTC).
QByteArray encodePlaces(const std::vector<RememberedItem>& places);

// None: not such a text. Places that make no sense are left out, unknown keys are ignored.
std::optional<std::vector<RememberedItem>> decodePlaces(QByteArrayView text);

} // namespace amberquill
