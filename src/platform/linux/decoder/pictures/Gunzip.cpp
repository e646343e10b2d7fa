#include "platform/linux/decoder/pictures/Gunzip.h"

#include "platform/linux/decoder/pictures/Owned.h"

#include <gio/gio.h>

namespace amberquill::desktop {

std::optional<QByteArray> gunzipped(const QByteArray& bytes, qsizetype limit) {
    const Owned<GInputStream> compressed(
        ::g_memory_input_stream_new_from_data(bytes.constData(), bytes.size(), nullptr));
    const Owned<GZlibDecompressor> decompressor(::g_zlib_decompressor_new(G_ZLIB_COMPRESSOR_FORMAT_GZIP));
    const Owned<GInputStream> stream(
        ::g_converter_input_stream_new(compressed.get(), G_CONVERTER(decompressor.get())));
    QByteArray text(limit + 1, Qt::Uninitialized);
    gsize size = 0;
    if (::g_input_stream_read_all(stream.get(), text.data(), static_cast<gsize>(text.size()), &size, nullptr,
                                  nullptr) == FALSE ||
        static_cast<qsizetype>(size) > limit) {
        return std::nullopt;
    }
    text.truncate(static_cast<qsizetype>(size));
    return text;
}

} // namespace amberquill::desktop
