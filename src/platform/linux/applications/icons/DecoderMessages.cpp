#include "platform/linux/applications/icons/DecoderMessages.h"

#include <QtGlobal>
#include <atomic>
#include <mutex>

namespace amberquill::desktop {

namespace {

thread_local int decodingsHere = 0;
std::atomic<QtMessageHandler> otherHandler = nullptr;

void handleMessage(QtMsgType type, const QMessageLogContext& context, const QString& message) {
    if (decodingsHere > 0 && type != QtFatalMsg) {
        return;
    }
    if (const auto other = otherHandler.load()) {
        other(type, context, message);
    }
}

} // namespace

void quietenDecoders() {
    static std::once_flag once;
    std::call_once(once, [] { otherHandler = qInstallMessageHandler(handleMessage); });
}

QuietDecoding::QuietDecoding() {
    ++decodingsHere;
}

QuietDecoding::~QuietDecoding() {
    --decodingsHere;
}

} // namespace amberquill::desktop
