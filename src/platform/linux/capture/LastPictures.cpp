#include "platform/linux/capture/LastPictures.h"

#include <algorithm>

namespace amberquill::desktop {

void LastPictures::keep(const ScreenArea& area, const QImage& picture) {
    const bool isSmall = std::max(picture.width(), picture.height()) <= longestEdge;
    QImage small =
        isSmall ? picture
                : picture.scaled(longestEdge, longestEdge, Qt::KeepAspectRatio, Qt::SmoothTransformation)
                      .convertToFormat(QImage::Format_RGB32);
    const std::scoped_lock lock(mutex_);
    std::erase_if(pictures_, [&area](const auto& kept) { return kept.first == area; });
    pictures_.emplace_back(area, std::move(small));
}

QImage LastPictures::of(const ScreenArea& area) const {
    const std::scoped_lock lock(mutex_);
    const auto found = std::find_if(pictures_.begin(), pictures_.end(),
                                    [&area](const auto& kept) { return kept.first == area; });
    return found != pictures_.end() ? found->second : QImage();
}

void LastPictures::forgetAllBut(const std::vector<ScreenArea>& areas) {
    const std::scoped_lock lock(mutex_);
    std::erase_if(pictures_, [&areas](const auto& kept) {
        return std::find(areas.begin(), areas.end(), kept.first) == areas.end();
    });
}

} // namespace amberquill::desktop
