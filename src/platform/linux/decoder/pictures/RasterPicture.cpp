#include "platform/linux/decoder/pictures/RasterPicture.h"

#include "platform/linux/decoder/pictures/PngPicture.h"

#include <QBuffer>
#include <QImageReader>
#include <cstdarg>
#include <dlfcn.h>
#include <mutex>

namespace amberquill::desktop {

namespace {

constexpr qint64 maximumPixels = qint64{32} * 1024 * 1024;
constexpr int maximumEdge = 32'000;

const char* pluginFor(IconFormat format) {
    switch (format) {
    case IconFormat::Jpeg:
        return "jpeg";
    case IconFormat::Webp:
        return "webp";
    case IconFormat::Tiff:
        return "tiff";
    case IconFormat::Xpm:
        return "xpm";
    case IconFormat::Ico:
        return "ico";
    case IconFormat::Png:
    case IconFormat::Icns:
    case IconFormat::Svg:
    case IconFormat::CompressedSvg:
        break;
    }
    return nullptr;
}

// A reader that does not look for another format than the one it is told.
class Reader {
public:
    Reader(const QByteArray& bytes, const char* plugin) {
        buffer_.setData(bytes);
        buffer_.open(QIODevice::ReadOnly);
        reader_.setAutoDetectImageFormat(false);
        reader_.setFormat(plugin);
        reader_.setDevice(&buffer_);
    }
    QImageReader* operator->() { return &reader_; }

private:
    QBuffer buffer_;
    QImageReader reader_;
};

bool isBearable(QSize size) {
    return !size.isEmpty() && size.width() <= maximumEdge && size.height() <= maximumEdge &&
           qint64{size.width()} * size.height() <= maximumPixels;
}

// The TIFF library writes what it finds wrong to standard error, and Qt's plugin lets it. The library has
// come with the plugin, under one of these names; it is not worth being loaded with every start.
void quietenTiff() {
    using Handler = void (*)(const char*, const char*, va_list);
    using SetHandler = Handler (*)(Handler);
    static std::once_flag once;
    std::call_once(once, [] {
        for (const char* const name : {"libtiff.so.6", "libtiff.so.5"}) {
            void* const library = ::dlopen(name, RTLD_NOLOAD | RTLD_LAZY);
            for (const char* const function : {"TIFFSetErrorHandler", "TIFFSetWarningHandler"}) {
                void* const found = library == nullptr ? nullptr : ::dlsym(library, function);
                if (found != nullptr) {
                    reinterpret_cast<SetHandler>(found)(nullptr);
                }
            }
        }
    });
}

} // namespace

QImage decodedRaster(const QByteArray& bytes, IconFormat format) {
    if (format == IconFormat::Png) {
        const auto size = pngSize(bytes);
        return size && isBearable(*size) ? decodedPng(bytes) : QImage();
    }
    const char* const plugin = pluginFor(format);
    if (plugin == nullptr) {
        return {};
    }
    Reader reader(bytes, plugin);
    if (format == IconFormat::Tiff && reader->canRead()) {
        quietenTiff(); // now that its library is there
    }
    return isBearable(reader->size()) ? reader->read() : QImage();
}

std::optional<QSize> embeddedPictureSize(const QByteArray& bytes) {
    if (iconFormat(bytes) != IconFormat::Jpeg) {
        return pngSize(bytes);
    }
    const auto size = Reader(bytes, pluginFor(IconFormat::Jpeg))->size();
    return size.isEmpty() ? std::nullopt : std::optional(size);
}

} // namespace amberquill::desktop
