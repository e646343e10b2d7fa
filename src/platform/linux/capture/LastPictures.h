#pragma once

#include "platform/ScreenCapture.h"

#include <QImage>
#include <mutex>
#include <utility>
#include <vector>

namespace amberquill::desktop {

// The last small picture of each screen, used when a screen cannot be read in time. Safe on any thread.
class LastPictures {
public:
    // In pixels, of a kept picture.
    static constexpr int longestEdge = 240;

    // Keeps the picture, in place of an earlier one of this area.
    void keep(const ScreenArea& area, const QImage& picture);

    // The picture of this area. Null: none is kept.
    [[nodiscard]] QImage of(const ScreenArea& area) const;

    // Forgets the pictures of all other areas.
    void forgetAllBut(const std::vector<ScreenArea>& areas);

private:
    mutable std::mutex mutex_;
    std::vector<std::pair<ScreenArea, QImage>> pictures_;
};

} // namespace amberquill::desktop
