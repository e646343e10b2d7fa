#pragma once

#include "data/PlaceMemory.h"

#include <QByteArray>
#include <QByteArrayView>
#include <optional>
#include <vector>

namespace amberquill {

// Larger texts are none of these.
inline constexpr qsizetype largestPlacesText = qsizetype{64} * 1024 * 1024;

// The text of the places.json file, JSON (RFC 8259): an object whose "places" is an array of objects, each
// with the keys "app" (its path) or "folder" (its UUID, with its "name"), "in" (the UUID of the folder, where
// there is one), "after", "before" (identities), "index" and "since" (ISO 8601, UTC).
QByteArray encodePlaces(const std::vector<RememberedItem>& places);

// None: not such a text. Places that make no sense are left out, unknown keys are ignored.
std::optional<std::vector<RememberedItem>> decodePlaces(QByteArrayView text);

} // namespace amberquill
