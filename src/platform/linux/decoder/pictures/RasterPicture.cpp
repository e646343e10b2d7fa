#include "platform/linux/decoder/pictures/RasterPicture.h"

#include <QBuffer>
#include <QImageReader>
#include <algorithm>
#include <numeric>
#include <tuple>

namespace amberquill::desktop {

namespace {

constexpr std::size_t maximumTried = 3;
constexpr qint64 maximumPixels = qint64{32} * 1024 * 1024;
constexpr int maximumEdge = 32'000;
constexpr int maximumMebibytes = 256; // of those pixels at 16 bits per channel
constexpr int maximumPictures = 256;  // considered in one file

// The name of Qt's reader. Null: not read by Qt.
const char* readerFor(IconFormat format) {
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

// An image reader for exactly one format, without detection.
class Reader {
public:
    Reader(const QByteArray& bytes, const char* format) {
        buffer_.setData(bytes);
        buffer_.open(QIODevice::ReadOnly);
        reader_.setAutoDetectImageFormat(false);
        reader_.setFormat(format);
        reader_.setDevice(&buffer_);
    }
    QImageReader* operator->() { return &reader_; }

private:
    QBuffer buffer_;
    QImageReader reader_;
};

bool isAllowedSize(QSize size) {
    return !size.isEmpty() && size.width() <= maximumEdge && size.height() <= maximumEdge &&
           qint64{size.width()} * size.height() <= maximumPixels;
}

} // namespace

std::vector<std::size_t> bestPictures(const std::vector<PictureSize>& pictures, int edge) {
    const auto worth = [&](std::size_t i) {
        const auto& [size, depth] = pictures[i];
        return size >= edge ? std::tuple(0, size, -depth) : std::tuple(1, -size, -depth);
    };
    std::vector<std::size_t> order(pictures.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::stable_sort(order.begin(), order.end(),
                     [&worth](std::size_t one, std::size_t other) { return worth(one) < worth(other); });
    order.resize(std::min(order.size(), maximumTried));
    return order;
}

QImage decodedRaster(const QByteArray& bytes, IconFormat format, int edge) {
    const char* const name = readerFor(format);
    if (name == nullptr) {
        return {};
    }
    Reader reader(bytes, name);
    const int count = format == IconFormat::Ico || format == IconFormat::Tiff ? reader->imageCount() : 1;
    if (count <= 1) {
        return isAllowedSize(reader->size()) ? reader->read() : QImage();
    }
    std::vector<PictureSize> sizes;
    for (int i = 0; i < std::min(count, maximumPictures) && reader->jumpToImage(i); ++i) {
        const auto size = reader->size();
        sizes.push_back({.edge = std::max(size.width(), size.height()),
                         .depth = QImage::toPixelFormat(reader->imageFormat()).bitsPerPixel()});
    }
    for (const auto i : bestPictures(sizes, edge)) {
        if (reader->jumpToImage(static_cast<int>(i)) && isAllowedSize(reader->size())) {
            if (auto image = reader->read(); !image.isNull()) {
                return image;
            }
        }
    }
    return {};
}

QSize rasterSize(const QByteArray& bytes, IconFormat format) {
    const char* const name = readerFor(format);
    return name == nullptr ? QSize() : Reader(bytes, name)->size();
}

void loadRasterReaders() {
    QImageReader::setAllocationLimit(maximumMebibytes);
    for (const auto format : {IconFormat::Png, IconFormat::Jpeg, IconFormat::Webp, IconFormat::Tiff,
                              IconFormat::Xpm, IconFormat::Ico}) {
        static_cast<void>(Reader({}, readerFor(format))->canRead());
    }
}

} // namespace amberquill::desktop
