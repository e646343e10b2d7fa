#pragma once

#include <QPoint>
#include <QRect>
#include <optional>
#include <vector>

namespace amberquill::desktop {

// The index of the first screen that contains the pointer, else of the nearest screen: the pointer may be in
// a gap between monitors. None: there are no screens. All in device pixels.
[[nodiscard]] std::optional<std::size_t> screenFor(QPoint pointer, const std::vector<QRect>& screens);

} // namespace amberquill::desktop
