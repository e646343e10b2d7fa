// Icon files of any bytes: decoding ends and gives an image of the requested size or none. Without fonts: the
// libraries for text are not under test.
#include "Require.h"
#include "platform/linux/decoder/pictures/IconDecoder.h"

#include <QCoreApplication>
#include <cstdint>

using namespace amberquill::desktop;

namespace {

constexpr int edge = 16;

} // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv) {
    static const QCoreApplication application(*argc, *argv); // tells Qt where its image plugins are
    prepareDecoders();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto bytes =
        QByteArray::fromRawData(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const auto icon = decodedIcon(bytes, edge, Fonts::Absent);
    require(icon.image.isNull() || (!icon.needsFonts && icon.image.size() == QSize(edge, edge) &&
                                    icon.image.format() == QImage::Format_ARGB32_Premultiplied));
    return 0;
}
