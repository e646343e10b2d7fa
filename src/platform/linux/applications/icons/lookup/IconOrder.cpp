#include "platform/linux/applications/icons/lookup/IconOrder.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>

namespace amberquill::desktop {

namespace {

enum class Group { Exact, Larger, Drawing, LargerDrawing, SmallerDrawing, Smaller, Unknown };

// A number whose order is that of IconOrder. From the highest bits: the group, the distance in pixels, the
// scale, whether it is not an application's icon, the directory, and the kind of icon.
using SortKey = std::uint64_t;

constexpr unsigned kindBits = 2;
constexpr unsigned directoryBits = 16;

SortKey packed(Group group, int distance, int scale, bool isOther, std::size_t directory, std::size_t kind) {
    auto key = static_cast<SortKey>(group);
    key = (key << 32U) | static_cast<SortKey>(distance);
    key = (key << 5U) | static_cast<SortKey>(scale);
    key = (key << 1U) | static_cast<SortKey>(isOther);
    key = (key << directoryBits) | static_cast<SortKey>(directory);
    return (key << kindBits) | static_cast<SortKey>(kind);
}

std::size_t directoryOf(SortKey key) {
    return (key >> kindBits) & ((1U << directoryBits) - 1);
}

std::size_t kindOf(SortKey key) {
    return key & ((1U << kindBits) - 1);
}

bool isSuitedTo(const IconDirectory& directory, int edge) {
    switch (directory.type) {
    case IconDirectory::Type::Fixed:
        break;
    case IconDirectory::Type::Scalable:
        return edge >= directory.minimumSize && edge <= directory.maximumSize;
    case IconDirectory::Type::Threshold:
        return std::abs(edge - directory.size) <= directory.threshold;
    }
    return edge == directory.size;
}

Group groupOf(const IconDirectory& directory, int pixels, int edge, bool isDrawing) {
    const bool isScalable = directory.type == IconDirectory::Type::Scalable;
    // Some themes declare directories of large pictures as scalable. Only in a directory that is named
    // "scalable" is a picture's size unknown.
    if (!isDrawing && isScalable && directory.path.starts_with("scalable")) {
        return Group::Unknown;
    }
    if (pixels == edge && !(isDrawing && isScalable)) {
        return Group::Exact;
    }
    if (isDrawing && isSuitedTo(directory, edge)) {
        return Group::Drawing;
    }
    if (pixels > edge) {
        return isDrawing ? Group::LargerDrawing : Group::Larger;
    }
    return isDrawing ? Group::SmallerDrawing : Group::Smaller;
}

SortKey sortKey(const IconDirectory& directory, std::size_t index, int edge, std::size_t kind) {
    const bool isDrawing = iconKinds.at(kind) == svgExtensions;
    // A drawing for scale 3 shows no more details than the one for scale 1.
    const int pixels = directory.size * (isDrawing ? 1 : directory.scale);
    const auto group = groupOf(directory, pixels, edge, isDrawing);
    const int distance = std::abs(pixels - edge);
    const bool isForApplications = directory.context == "Applications" || directory.path.ends_with("/apps");
    return packed(group, distance, directory.scale, !isForApplications, index, kind);
}

} // namespace

IconOrder::IconOrder(const std::vector<IconDirectory>& directories, int edge) {
    std::vector<SortKey> keys;
    keys.reserve(directories.size() * iconKinds.size());
    for (std::size_t i = 0; i < directories.size(); ++i) {
        for (std::size_t kind = 0; kind < iconKinds.size(); ++kind) {
            keys.push_back(sortKey(directories[i], i, edge, kind));
        }
    }
    std::sort(keys.begin(), keys.end());
    candidates_.reserve(keys.size());
    positions_.resize(keys.size());
    for (const auto key : keys) {
        positions_[directoryOf(key) * iconKinds.size() + kindOf(key)] = candidates_.size();
        candidates_.push_back({.directory = directoryOf(key), .extensions = iconKinds.at(kindOf(key))});
    }
}

} // namespace amberquill::desktop
