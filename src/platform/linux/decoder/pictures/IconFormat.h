#pragma once

#include <QByteArrayView>
#include <optional>

namespace amberquill::desktop {

enum class IconFormat { Png, Jpeg, Webp, Tiff, Xpm, Ico, Icns, Svg, CompressedSvg };

// The format by a file's first bytes. None: not a format of icons. `Svg` is returned for any markup.
[[nodiscard]] std::optional<IconFormat> iconFormat(QByteArrayView bytes);

} // namespace amberquill::desktop
