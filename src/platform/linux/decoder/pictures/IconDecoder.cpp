#include "platform/linux/decoder/pictures/IconDecoder.h"

#include "platform/linux/decoder/pictures/IcnsContainer.h"
#include "platform/linux/decoder/pictures/ImageFitting.h"
#include "platform/linux/decoder/pictures/Inflate.h"
#include "platform/linux/decoder/pictures/RasterPicture.h"
#include "platform/linux/decoder/pictures/SvgDrawing.h"

#include <algorithm>
#include <utility>

namespace amberquill::desktop {

namespace {

constexpr std::size_t maximumPictures = 3; // of a file's pictures, where the best ones are broken

QImage decodedIcns(const QByteArray& bytes, int edge) {
    auto pictures = icnsPictures(bytes);
    // The exact size, then larger ones from the smallest, then smaller ones from the largest.
    const auto worth = [edge](const IcnsPicture& picture) {
        return picture.edge >= edge ? std::pair(0, picture.edge) : std::pair(1, -picture.edge);
    };
    std::stable_sort(
        pictures.begin(), pictures.end(),
        [&worth](const IcnsPicture& one, const IcnsPicture& other) { return worth(one) < worth(other); });
    for (std::size_t i = 0; i < std::min(pictures.size(), maximumPictures); ++i) {
        const auto image = pictures[i].kind == IcnsPicture::Kind::Png
                               ? decodedRaster(pictures[i].data.toByteArray(), IconFormat::Png)
                               : unpackedIcnsPicture(pictures[i]);
        if (!image.isNull()) {
            return fittedImage(image, edge);
        }
    }
    return {};
}

} // namespace

QImage decodedIcon(const QByteArray& bytes, int edge) {
    if (edge < 1 || edge > maximumIconEdge || bytes.size() > maximumIconBytes) {
        return {};
    }
    const auto format = iconFormat(bytes);
    if (!format) {
        return {};
    }
    switch (*format) {
    case IconFormat::Svg:
        return drawnSvg(bytes, edge);
    case IconFormat::CompressedSvg: {
        const auto text = inflated(bytes, Compression::Gzip, maximumIconBytes);
        return text && iconFormat(*text) == IconFormat::Svg ? drawnSvg(*text, edge) : QImage();
    }
    case IconFormat::Icns:
        return decodedIcns(bytes, edge);
    case IconFormat::Png:
    case IconFormat::Jpeg:
    case IconFormat::Webp:
    case IconFormat::Tiff:
    case IconFormat::Xpm:
    case IconFormat::Ico:
        break;
    }
    return fittedImage(decodedRaster(bytes, *format), edge);
}

} // namespace amberquill::desktop
