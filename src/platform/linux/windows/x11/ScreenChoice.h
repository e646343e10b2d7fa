#pragma once

#include <QPoint>
#include <QRect>
#include <optional>
#include <vector>

namespace amberquill::desktop {

// The index of the first screen that holds the point, else of the nearest one: the pointer of a server with
// gaps between its monitors may rest in one. None without screens. All in device pixels.
[[nodiscard]] std::optional<std::size_t> screenFor(QPoint pointer, const std::vector<QRect>& screens);

} // namespace amberquill::desktop
