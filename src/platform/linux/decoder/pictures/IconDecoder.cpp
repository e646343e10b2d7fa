#include "platform/linux/decoder/pictures/IconDecoder.h"

#include "platform/linux/decoder/channel/IconBounds.h"
#include "platform/linux/decoder/pictures/IcnsContainer.h"
#include "platform/linux/decoder/pictures/IconFormat.h"
#include "platform/linux/decoder/pictures/ImageFitting.h"
#include "platform/linux/decoder/pictures/RasterPicture.h"
#include "platform/linux/decoder/pictures/SvgDrawing.h"

#include <QByteArrayView>
#include <cstdio>
#include <fontconfig/fontconfig.h>

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

void ignoreMessage(QtMsgType /*type*/, const QMessageLogContext& /*context*/, const QString& /*message*/) {}

// Drops the libraries' warnings about broken files: Qt's messages, and other libraries' output to `stderr`.
// The descriptor stays open for reports of crashes.
void silenceLibraries() {
    qInstallMessageHandler(ignoreMessage);
#ifdef __GLIBC__ // other C libraries' stderr is a constant
    if (auto* const nowhere = ::fopencookie(nullptr, "w", {})) {
        stderr = nowhere;
    }
#endif
}

// A PNG and a JPEG of one pixel each.
constexpr QByteArrayView drawingOfPictures =
    R"(<svg xmlns="http://www.w3.org/2000/svg" xmlns:xlink="http://www.w3.org/1999/xlink" viewBox="0 0 1 1">)"
    R"(<image width="1" height="1" xlink:href="data:;base64,)"
    "iVBORw0KGgoAAAANSUhEUgAAAAEAAAABAQAAAAA3bvkkAAAACklEQVR42mNgAAAAAgAB5Sfe/AAAAABJRU5ErkJggg=="
    "\"/>"
    R"(<image width="1" height="1" xlink:href="data:;base64,)"
    "/9j/4AAQSkZJRgABAQAAAQABAAD/2wBDAP//////////////////////////////////////////////////////"
    "////////////////////////////////wAALCAABAAEBAREA/8QAFAABAAAAAAAAAAAAAAAAAAAAA//EABQQAQAA"
    "AAAAAAAAAAAAAAAAAAD/2gAIAQEAAD8AN//Z"
    "\"/></svg>";

void appendAll(std::vector<std::string>& paths, FcStrList* list) {
    if (list == nullptr) {
        return;
    }
    while (const FcChar8* const path = FcStrListNext(list)) {
        paths.emplace_back(reinterpret_cast<const char*>(path));
    }
    FcStrListDone(list);
}

} // namespace

DecodedIcon decodedIcon(const QByteArray& bytes, int edge, Fonts fonts) {
    if (edge < 1 || edge > maximumIconEdge || bytes.size() > maximumIconBytes) {
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
        const auto document = gunzipped(bytes, maximumIconBytes);
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

void prepareDecoders() {
    silenceLibraries();
    loadRasterReaders();
    // The renderer loads its readers of embedded pictures with the first drawing that has some.
    static_cast<void>(drawnSvg(drawingOfPictures.toByteArray(), 1));
}

void prepareFonts() {
    ::FcInit();
}

std::vector<std::string> fontPaths() {
    std::vector<std::string> paths;
    if (FcInit() == FcTrue) {
        appendAll(paths, FcConfigGetFontDirs(nullptr));
        appendAll(paths, FcConfigGetCacheDirs(nullptr));
        appendAll(paths, FcConfigGetConfigFiles(nullptr));
    }
    return paths;
}

} // namespace amberquill::desktop
