#pragma once

#include <QByteArrayView>
#include <optional>

namespace amberquill::desktop {

enum class IconFormat { Png, Jpeg, Webp, Tiff, Xpm, Ico, Icns, Svg, CompressedSvg };

// What a file's first bytes say it is, whatever it is called. None: nothing that icons come in. `Svg` stands
// for markup of any kind.
[[nodiscard]] std::optional<IconFormat> iconFormat(QByteArrayView bytes);

} // namespace amberquill::desktop
