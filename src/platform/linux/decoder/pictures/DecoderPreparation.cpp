#include "platform/linux/decoder/pictures/DecoderPreparation.h"

#include "platform/linux/decoder/pictures/RasterPicture.h"
#include "platform/linux/decoder/pictures/SvgDrawing.h"

#include <QByteArrayView>
#include <cstdio>
#include <fontconfig/fontconfig.h>

namespace amberquill::desktop {

namespace {

void drop(QtMsgType /*type*/, const QMessageLogContext& /*context*/, const QString& /*message*/) {}

// What libraries find wrong with a file is of no use to anybody: Qt reports it as messages, all others, and
// libpng below Qt, by the C library's stream. The descriptor stays for reports of crashes.
void silence() {
    qInstallMessageHandler(drop);
#ifdef __GLIBC__ // elsewhere the stream is a constant
    if (auto* const nowhere = ::fopencookie(nullptr, "w", {})) {
        stderr = nowhere;
    }
#endif
}

// One pixel each, as PNG and as JPEG.
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

} // namespace

void prepareDecoders() {
    silence();
    loadRasterReaders();
    // The renderer finds out what reads pictures in drawings with the first one.
    static_cast<void>(drawnSvg(drawingOfPictures.toByteArray(), 1));
}

void prepareFonts() {
    ::FcInit();
}

} // namespace amberquill::desktop
