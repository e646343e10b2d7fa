#pragma once

#include "platform/linux/applications/icons/lookup/IconFolder.h"
#include "platform/linux/applications/icons/lookup/IconThemeIndex.h"

#include <vector>

namespace amberquill::desktop {

// The order in which a theme's directories are searched for an icon of `edge` device pixels. The sharpest
// icon comes first, except for 2:
//   1. drawn for exactly this size,
//   2. the next larger picture, then larger ones (measured on 34 programs that have both: the shrunk picture
//   is
//      91 to 97 % as sharp as the drawing, and takes a tenth of the time),
//   3. a drawing meant for this size among others, the one drawn for the nearest size first,
//   4. the drawing made for the next larger size, then for larger ones,
//   5. a drawing made for smaller sizes, the largest first (themes draw small ones simpler),
//   6. the largest smaller picture, then smaller ones (enlarging blurs),
//   7. pictures in a directory named for scalable drawings: their size is unknown.
// A picture's size is in device pixels. A drawing's size ignores the scale: the drawings in "16@2" are the
// simple ones for 16. Among equals: lower scale, applications' icons before others, then the theme's own
// order. In one directory PNG comes before SVG, and SVG before XPM, as the icon theme standard says.
class IconOrder {
public:
    struct Candidate {
        std::size_t directory = 0; // index in the list that the order was made from
        IconExtensions extensions; // one of `iconKinds`
    };

    IconOrder(const std::vector<IconDirectory>& directories, int edge);

    // Best first. Each directory is in the list once for each of `iconKinds`.
    [[nodiscard]] const std::vector<Candidate>& candidates() const { return candidates_; }

    // The index in `candidates` of a directory with the kind of this index.
    [[nodiscard]] std::size_t position(std::size_t directory, std::size_t kind) const {
        return positions_[directory * iconKinds.size() + kind];
    }

private:
    std::vector<Candidate> candidates_;
    std::vector<std::size_t> positions_;
};

} // namespace amberquill::desktop
