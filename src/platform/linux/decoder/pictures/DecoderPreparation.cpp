#include "platform/linux/decoder/pictures/DecoderPreparation.h"

#include "platform/linux/decoder/pictures/RasterPicture.h"
#include "platform/linux/decoder/pictures/SvgDrawing.h"

#include <QtGlobal>
#include <cstdio>

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

} // namespace

void prepareDecoders() {
    silence();
    loadRasterReaders();
}

void prepareFonts() {}

} // namespace amberquill::desktop
