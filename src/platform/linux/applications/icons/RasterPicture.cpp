#include "platform/linux/applications/icons/RasterPicture.h"

#include <QBuffer>
#include <QImageReader>

namespace amberquill::desktop {

namespace {

constexpr qint64 maximumPixels = qint64{32} * 1024 * 1024;
constexpr int maximumEdge = 32'000;

const char* pluginFor(IconFormat format) {
    switch (format) {
    case IconFormat::Png:
        return "png";
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

} // namespace

QImage decodedRaster(const QByteArray& bytes, IconFormat format) {
    const char* const plugin = pluginFor(format);
    if (plugin == nullptr) {
        return {};
    }
    Reader reader(bytes, plugin);
    const auto size = reader->size();
    if (size.isEmpty() || size.width() > maximumEdge || size.height() > maximumEdge ||
        qint64{size.width()} * size.height() > maximumPixels) {
        return {};
    }
    return reader->read();
}

std::optional<QSize> embeddedPictureSize(const QByteArray& bytes) {
    const auto format = iconFormat(bytes);
    if (format != IconFormat::Png && format != IconFormat::Jpeg) {
        return std::nullopt;
    }
    const auto size = Reader(bytes, pluginFor(*format))->size();
    return size.isEmpty() ? std::nullopt : std::optional(size);
}

} // namespace amberquill::desktop
