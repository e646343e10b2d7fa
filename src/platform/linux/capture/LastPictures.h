#pragma once

#include "platform/ScreenCapture.h"

#include <QImage>
#include <mutex>
#include <utility>
#include <vector>

namespace amberquill::desktop {

// The last picture of each screen, small: what stands in for a screen that cannot be read in time. Safe on
// any thread.
class LastPictures {
public:
    // In pixels, of a picture that is kept.
    static constexpr int longestEdge = 240;

    // Instead of the earlier one of this area.
    void keep(const ScreenArea& area, const QImage& picture);

    // The picture of this area; null: there is none.
    [[nodiscard]] QImage of(const ScreenArea& area) const;

    // Forgets those of all other areas.
    void forgetAllBut(const std::vector<ScreenArea>& areas);

private:
    mutable std::mutex mutex_;
    std::vector<std::pair<ScreenArea, QImage>> pictures_;
};

} // namespace amberquill::desktop
