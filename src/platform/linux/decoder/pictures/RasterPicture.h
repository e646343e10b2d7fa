#pragma once

#include "platform/linux/decoder/pictures/IconFormat.h"

#include <QByteArray>
#include <QImage>
#include <QSize>
#include <optional>

namespace amberquill::desktop {

// A picture made of pixels. Null: broken, or with more pixels than an icon has; its header says how many, and
// is asked before anything is allocated.
[[nodiscard]] QImage decodedRaster(const QByteArray& bytes, IconFormat format);

// The size that the header of a PNG or JPEG picture states; none for anything else.
[[nodiscard]] std::optional<QSize> embeddedPictureSize(const QByteArray& bytes);

} // namespace amberquill::desktop
