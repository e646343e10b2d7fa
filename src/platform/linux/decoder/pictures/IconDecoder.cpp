#include "platform/linux/decoder/pictures/IconDecoder.h"

#include "platform/linux/decoder/channel/IconBounds.h"
#include "platform/linux/decoder/pictures/Gunzip.h"
#include "platform/linux/decoder/pictures/IcnsContainer.h"
#include "platform/linux/decoder/pictures/IconFormat.h"
#include "platform/linux/decoder/pictures/ImageFitting.h"
#include "platform/linux/decoder/pictures/PictureChoice.h"
#include "platform/linux/decoder/pictures/RasterPicture.h"
#include "platform/linux/decoder/pictures/SvgDrawing.h"
#include "platform/linux/decoder/pictures/SvgText.h"

namespace amberquill::desktop {

namespace {

DecodedIcon decodedSvg(const QByteArray& document, int edge, Fonts fonts) {
    if (fonts == Fonts::Absent && mayHoldText(document)) {
        return {.image = {}, .needsFonts = true};
    }
    return {.image = drawnSvg(document, edge)};
}

QImage decodedIcns(const QByteArray& bytes, int edge) {
    const auto pictures = icnsPictures(bytes);
    std::vector<PictureSize> sizes;
    sizes.reserve(pictures.size());
    for (const auto& picture : pictures) {
        sizes.push_back({.edge = picture.edge});
    }
    for (const auto i : bestPictures(sizes, edge)) {
        auto image = pictures[i].kind == IcnsPicture::Kind::Png
                         ? decodedRaster(pictures[i].data.toByteArray(), IconFormat::Png, edge)
                         : unpackedIcnsPicture(pictures[i]);
        if (!image.isNull()) {
            return image;
        }
    }
    return {};
}

} // namespace

DecodedIcon decodedIcon(const QByteArray& bytes, int edge, Fonts fonts) {
    if (edge < 1 || edge > largestIconEdge || bytes.size() > largestIconBytes) {
        return {};
    }
    const auto format = iconFormat(bytes);
    if (!format) {
        return {};
    }
    switch (*format) {
    case IconFormat::Svg:
        return decodedSvg(bytes, edge, fonts);
    case IconFormat::CompressedSvg: {
        const auto document = gunzipped(bytes, largestIconBytes);
        return document && iconFormat(*document) == IconFormat::Svg ? decodedSvg(*document, edge, fonts)
                                                                    : DecodedIcon();
    }
    case IconFormat::Icns:
        return {.image = fittedImage(decodedIcns(bytes, edge), edge)};
    case IconFormat::Png:
    case IconFormat::Jpeg:
    case IconFormat::Webp:
    case IconFormat::Tiff:
    case IconFormat::Xpm:
    case IconFormat::Ico:
        break;
    }
    return {.image = fittedImage(decodedRaster(bytes, *format, edge), edge)};
}

} // namespace amberquill::desktop
