#include "platform/linux/applications/icons/IconOrder.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>

namespace amberquill::desktop {

namespace {

enum class Group { Exact, Larger, Drawing, LargerDrawing, SmallerDrawing, Smaller, Unknown };

// One number that sorts as IconOrder promises: the group, the distance in pixels, the scale, whether
// it is something else than an application's icon, the directory, and the kind of icon in it.
using Worth = std::uint64_t;

constexpr unsigned kindBits = 2;
constexpr unsigned directoryBits = 16;

Worth packed(Group group, int distance, int scale, bool isOther, std::size_t directory, std::size_t kind) {
    auto worth = static_cast<Worth>(group);
    worth = (worth << 32U) | static_cast<Worth>(distance);
    worth = (worth << 5U) | static_cast<Worth>(scale);
    worth = (worth << 1U) | static_cast<Worth>(isOther);
    worth = (worth << directoryBits) | static_cast<Worth>(directory);
    return (worth << kindBits) | static_cast<Worth>(kind);
}

std::size_t directoryOf(Worth worth) {
    return (worth >> kindBits) & ((1U << directoryBits) - 1);
}

std::size_t kindOf(Worth worth) {
    return worth & ((1U << kindBits) - 1);
}

bool isMeantFor(const IconDirectory& directory, int edge) {
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
    // Large pictures, which may be shrunk, stand in directories that call themselves scalable, too. Only in
    // one that is named so a picture may have any size.
    if (!isDrawing && isScalable && directory.path.starts_with("scalable")) {
        return Group::Unknown;
    }
    if (pixels == edge && !(isDrawing && isScalable)) {
        return Group::Exact;
    }
    if (isDrawing && isMeantFor(directory, edge)) {
        return Group::Drawing;
    }
    if (pixels > edge) {
        return isDrawing ? Group::LargerDrawing : Group::Larger;
    }
    return isDrawing ? Group::SmallerDrawing : Group::Smaller;
}

Worth worth(const IconDirectory& directory, std::size_t index, int edge, std::size_t kind) {
    const bool isDrawing = iconKinds.at(kind) == drawingEndings;
    // A picture has its pixels, but a drawing for a screen of scale 3 shows no more than the one for scale 1.
    const int pixels = directory.size * (isDrawing ? 1 : directory.scale);
    const auto group = groupOf(directory, pixels, edge, isDrawing);
    const int distance = std::abs(pixels - edge);
    const bool isApplications = directory.context == "Applications" || directory.path.ends_with("/apps");
    return packed(group, distance, directory.scale, !isApplications, index, kind);
}

} // namespace

IconOrder::IconOrder(const std::vector<IconDirectory>& directories, int edge) {
    std::vector<Worth> worths;
    worths.reserve(directories.size() * iconKinds.size());
    for (std::size_t i = 0; i < directories.size(); ++i) {
        for (std::size_t kind = 0; kind < iconKinds.size(); ++kind) {
            worths.push_back(worth(directories[i], i, edge, kind));
        }
    }
    std::sort(worths.begin(), worths.end());
    places_.reserve(worths.size());
    positions_.resize(worths.size());
    for (const auto one : worths) {
        positions_[directoryOf(one) * iconKinds.size() + kindOf(one)] = places_.size();
        places_.push_back({.directory = directoryOf(one), .endings = iconKinds.at(kindOf(one))});
    }
}

} // namespace amberquill::desktop
