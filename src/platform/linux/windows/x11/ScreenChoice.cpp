#include "platform/linux/windows/x11/ScreenChoice.h"

#include <algorithm>
#include <cmath>

namespace amberquill::desktop {
namespace {

[[nodiscard]] double distance(QPoint point, const QRect& area) {
    const double x = point.x();
    const double y = point.y();
    const double dx = std::max({area.left() - x, x - area.right(), 0.0});
    const double dy = std::max({area.top() - y, y - area.bottom(), 0.0});
    return std::hypot(dx, dy);
}

} // namespace

std::optional<std::size_t> screenFor(QPoint pointer, const std::vector<QRect>& screens) {
    const auto nearest =
        std::min_element(screens.begin(), screens.end(), [pointer](const QRect& a, const QRect& b) {
            return distance(pointer, a) < distance(pointer, b);
        });
    if (nearest == screens.end()) {
        return std::nullopt;
    }
    return static_cast<std::size_t>(nearest - screens.begin());
}

} // namespace amberquill::desktop
