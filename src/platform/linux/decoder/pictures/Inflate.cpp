#include "platform/linux/decoder/pictures/Inflate.h"

#include <array>
#include <zlib.h>

namespace amberquill::desktop {

std::optional<QByteArray> inflated(QByteArrayView bytes, Compression compression, qsizetype limit) {
    constexpr int gzipOnly = 16;
    z_stream stream = {};
    if (::inflateInit2(&stream, MAX_WBITS + (compression == Compression::Gzip ? gzipOnly : 0)) != Z_OK) {
        return std::nullopt;
    }
    stream.next_in = reinterpret_cast<const Bytef*>(bytes.data());
    stream.avail_in = static_cast<uInt>(bytes.size());
    QByteArray text;
    constexpr std::size_t partBytes = 16384;
    std::array<char, partBytes> part{};
    int state = Z_OK;
    while (state == Z_OK && text.size() <= limit) {
        stream.next_out = reinterpret_cast<Bytef*>(part.data());
        stream.avail_out = static_cast<uInt>(part.size());
        state = ::inflate(&stream, Z_NO_FLUSH);
        text.append(part.data(), static_cast<qsizetype>(part.size() - stream.avail_out));
    }
    ::inflateEnd(&stream);
    return state == Z_STREAM_END && text.size() <= limit ? std::optional(text) : std::nullopt;
}

} // namespace amberquill::desktop
