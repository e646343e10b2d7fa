#include "platform/linux/decoder/pictures/PngPicture.h"

#include "platform/linux/decoder/pictures/Inflate.h"

#include <QColorSpace>
#include <QtEndian>
#include <bit>
#include <png.h>

namespace amberquill::desktop {

namespace {

constexpr qsizetype signatureBytes = 8;
constexpr qsizetype chunkHeaderBytes = 8; // a length, then a type of four letters
constexpr qsizetype maximumProfile = qsizetype{1024} * 1024;

// The data of the first chunk of this type before the pixels.
std::optional<QByteArrayView> chunk(QByteArrayView file, QByteArrayView type) {
    auto rest = file.sliced(std::min(signatureBytes, file.size()));
    while (rest.size() >= chunkHeaderBytes) {
        const auto length = qsizetype{qFromBigEndian<quint32>(rest.data())};
        const auto found = rest.sliced(4, 4);
        constexpr qsizetype checksumBytes = 4;
        if (length > rest.size() - chunkHeaderBytes - checksumBytes || found == QByteArrayView("IDAT")) {
            break;
        }
        if (found == type) {
            return rest.sliced(chunkHeaderBytes, length);
        }
        rest = rest.sliced(chunkHeaderBytes + length + checksumBytes);
    }
    return std::nullopt;
}

QColorSpace profile(QByteArrayView file) {
    const auto data = chunk(file, "iCCP"); // a name, a NUL, the way of compression, the profile
    const auto end = data ? data->indexOf('\0') : -1;
    if (end < 0 || data->size() < end + 2) {
        return {};
    }
    const auto icc = inflated(data->sliced(end + 2), Compression::Zlib, maximumProfile);
    return icc ? QColorSpace::fromIccProfile(*icc) : QColorSpace();
}

} // namespace

std::optional<QSize> pngSize(QByteArrayView bytes) {
    constexpr QByteArrayView beginning("\x89PNG\r\n\x1a\n\0\0\0\x0DIHDR", 16);
    if (bytes.size() < beginning.size() + 8 || !bytes.startsWith(beginning)) {
        return std::nullopt;
    }
    const auto width = qFromBigEndian<quint32>(bytes.data() + beginning.size());
    const auto height = qFromBigEndian<quint32>(bytes.data() + beginning.size() + 4);
    if (width == 0 || height == 0 || width > PNG_UINT_31_MAX || height > PNG_UINT_31_MAX) {
        return std::nullopt;
    }
    return QSize(static_cast<int>(width), static_cast<int>(height));
}

QImage decodedPng(const QByteArray& bytes) {
    png_image reader = {};
    reader.version = PNG_IMAGE_VERSION;
    if (::png_image_begin_read_from_memory(&reader, bytes.constData(),
                                           static_cast<std::size_t>(bytes.size())) == 0) {
        return {};
    }
    reader.flags |= PNG_IMAGE_FLAG_16BIT_sRGB; // sixteen bits, too, are for the screen where nothing is said
    reader.format = std::endian::native == std::endian::little ? PNG_FORMAT_BGRA : PNG_FORMAT_ARGB;
    QImage image(static_cast<int>(reader.width), static_cast<int>(reader.height), QImage::Format_ARGB32);
    const bool isRead = !image.isNull() &&
                        ::png_image_finish_read(&reader, nullptr, image.bits(),
                                                static_cast<png_int_32>(image.bytesPerLine()), nullptr) != 0;
    ::png_image_free(&reader);
    if (!isRead) {
        return {};
    }
    image.setColorSpace(profile(bytes));
    return image;
}

} // namespace amberquill::desktop
