#include "platform/linux/capture/wayland/StoredFrame.h"

#include "platform/linux/capture/ScreenRows.h"
#include "platform/linux/files/FileDescriptor.h"

#include <algorithm>
#include <array>
#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>
#include <vector>
#include <wayland-client-protocol.h>
#include <wayland-client.h>

namespace amberquill::desktop {

namespace {

// Limits above the largest outputs that exist.
constexpr std::uint32_t longestEdge = 16384;
constexpr std::uint64_t mostBytes = std::uint64_t{1} << 28U;

struct Format {
    std::uint32_t name;
    int bitsPerPixel;
    std::uint32_t red;
    std::uint32_t green;
    std::uint32_t blue;
};

constexpr std::array formats{
    Format{WL_SHM_FORMAT_ARGB8888, 32, 0xFF0000, 0xFF00, 0xFF},
    Format{WL_SHM_FORMAT_XRGB8888, 32, 0xFF0000, 0xFF00, 0xFF},
    Format{WL_SHM_FORMAT_ABGR8888, 32, 0xFF, 0xFF00, 0xFF0000},
    Format{WL_SHM_FORMAT_XBGR8888, 32, 0xFF, 0xFF00, 0xFF0000},
    Format{WL_SHM_FORMAT_RGBA8888, 32, 0xFF000000, 0xFF0000, 0xFF00},
    Format{WL_SHM_FORMAT_RGBX8888, 32, 0xFF000000, 0xFF0000, 0xFF00},
    Format{WL_SHM_FORMAT_BGRA8888, 32, 0xFF00, 0xFF0000, 0xFF000000},
    Format{WL_SHM_FORMAT_BGRX8888, 32, 0xFF00, 0xFF0000, 0xFF000000},
    Format{WL_SHM_FORMAT_ARGB2101010, 32, 0x3FF00000, 0xFFC00, 0x3FF},
    Format{WL_SHM_FORMAT_XRGB2101010, 32, 0x3FF00000, 0xFFC00, 0x3FF},
    Format{WL_SHM_FORMAT_ABGR2101010, 32, 0x3FF, 0xFFC00, 0x3FF00000},
    Format{WL_SHM_FORMAT_XBGR2101010, 32, 0x3FF, 0xFFC00, 0x3FF00000},
    Format{WL_SHM_FORMAT_RGB888, 24, 0xFF0000, 0xFF00, 0xFF},
    Format{WL_SHM_FORMAT_BGR888, 24, 0xFF, 0xFF00, 0xFF0000},
    Format{WL_SHM_FORMAT_RGB565, 16, 0xF800, 0x7E0, 0x1F},
    Format{WL_SHM_FORMAT_BGR565, 16, 0x1F, 0x7E0, 0xF800},
};

// Reads parts of a frame's rows as Qt's pixels.
class FrameRows {
public:
    FrameRows(const StoredFrame& frame, const unsigned char* memory)
        : frame_(frame)
        , memory_(memory)
        , isQtRgb_(frame.pixels.isQtRgb() && frame.stride % 4 == 0) {}

    // `count` pixels from (x, y) on. Valid until the next call.
    const QRgb* at(int x, int y, int count) {
        const auto* row =
            memory_ + static_cast<std::size_t>(y) * static_cast<std::size_t>(frame_.stride) +
            static_cast<std::size_t>(x) * static_cast<std::size_t>(frame_.pixels.bytesPerPixel());
        if (isQtRgb_) {
            return reinterpret_cast<const QRgb*>(row);
        }
        unpacked_.resize(static_cast<std::size_t>(count));
        frame_.pixels.unpack(row, count, unpacked_.data());
        return unpacked_.data();
    }

private:
    const StoredFrame& frame_;
    const unsigned char* memory_;
    bool isQtRgb_;
    std::vector<QRgb> unpacked_;
};

void addRows(ScreenRows& rows, FrameRows& stored, const QSize& size, const Orientation& orientation) {
    std::vector<QRgb> reversed(orientation.fromRight ? static_cast<std::size_t>(size.width()) : 0);
    for (int y = 0; y < size.height(); ++y) {
        const QRgb* row = stored.at(0, orientation.fromBottom ? size.height() - 1 - y : y, size.width());
        if (orientation.fromRight) {
            std::reverse_copy(row, row + size.width(), reversed.begin());
            row = reversed.data();
        }
        rows.add(row);
    }
}

// Adds the columns in memory as the rows of the picture, several at a time to pass through memory less often.
void addColumns(ScreenRows& rows, FrameRows& stored, const QSize& size, const Orientation& orientation) {
    constexpr int columnsAtATime = 16;
    const auto height = static_cast<std::size_t>(size.height());
    std::vector<QRgb> columns(columnsAtATime * height);
    for (int done = 0; done < size.width(); done += columnsAtATime) {
        const int count = std::min(columnsAtATime, size.width() - done);
        const int left = orientation.fromRight ? size.width() - done - count : done;
        for (int y = 0; y < size.height(); ++y) {
            const QRgb* row = stored.at(left, orientation.fromBottom ? size.height() - 1 - y : y, count);
            for (int i = 0; i < count; ++i) {
                columns[static_cast<std::size_t>(i) * height + static_cast<std::size_t>(y)] = row[i];
            }
        }
        for (int i = 0; i < count; ++i) {
            const int column = orientation.fromRight ? count - 1 - i : i;
            rows.add(columns.data() + static_cast<std::size_t>(column) * height);
        }
    }
}

} // namespace

std::optional<StoredFrame> StoredFrame::of(std::uint32_t format, std::uint32_t width, std::uint32_t height,
                                           std::uint32_t stride) {
    const auto* const known = std::find_if(formats.begin(), formats.end(),
                                           [format](const Format& each) { return each.name == format; });
    if (known == formats.end() || width == 0 || height == 0 || width > longestEdge || height > longestEdge) {
        return std::nullopt;
    }
    const auto pixels = PixelLayout::of(known->bitsPerPixel, known->red, known->green, known->blue);
    const std::uint64_t bytesOfRow = std::uint64_t{width} * static_cast<unsigned>(known->bitsPerPixel) / 8;
    if (!pixels || stride < bytesOfRow || std::uint64_t{stride} * height > mostBytes) {
        return std::nullopt;
    }
    return StoredFrame{*pixels, format, QSize(static_cast<int>(width), static_cast<int>(height)),
                       static_cast<int>(stride)};
}

Orientation Orientation::of(std::int32_t transform, bool bottomUp) {
    Orientation orientation;
    switch (transform) {
    case WL_OUTPUT_TRANSFORM_90:
        orientation = {.exchanged = true, .fromBottom = true};
        break;
    case WL_OUTPUT_TRANSFORM_180:
        orientation = {.fromRight = true, .fromBottom = true};
        break;
    case WL_OUTPUT_TRANSFORM_270:
        orientation = {.exchanged = true, .fromRight = true};
        break;
    case WL_OUTPUT_TRANSFORM_FLIPPED:
        orientation = {.fromRight = true};
        break;
    case WL_OUTPUT_TRANSFORM_FLIPPED_90:
        orientation = {.exchanged = true};
        break;
    case WL_OUTPUT_TRANSFORM_FLIPPED_180:
        orientation = {.fromBottom = true};
        break;
    case WL_OUTPUT_TRANSFORM_FLIPPED_270:
        orientation = {.exchanged = true, .fromRight = true, .fromBottom = true};
        break;
    default:
        break;
    }
    orientation.fromBottom = orientation.fromBottom != bottomUp;
    return orientation;
}

ScreenPicture uprightPicture(const StoredFrame& frame, const Orientation& orientation,
                             const unsigned char* memory, int shrink, bool alsoWhole) {
    FrameRows stored(frame, memory);
    ScreenRows rows(orientation.exchanged ? frame.size.transposed() : frame.size, shrink, alsoWhole);
    if (orientation.exchanged) {
        addColumns(rows, stored, frame.size, orientation);
    } else {
        addRows(rows, stored, frame.size, orientation);
    }
    return rows.picture();
}

SharedFrame::SharedFrame(wl_shm* shm, const StoredFrame& frame)
    : size_(frame.bytes())
    , buffer_(nullptr, [](wl_buffer* it) { wl_buffer_destroy(it); }) {
    const FileDescriptor file(::memfd_create("amberquill", MFD_CLOEXEC | MFD_ALLOW_SEALING));
    if (file.get() < 0 || ::ftruncate(file.get(), static_cast<off_t>(size_)) != 0) {
        return;
    }
    // Sealed: the compositor cannot shrink the file while it is mapped here.
    ::fcntl(file.get(), F_ADD_SEALS, F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_SEAL);
    void* const mapped = ::mmap(nullptr, size_, PROT_READ, MAP_SHARED, file.get(), 0);
    if (mapped == MAP_FAILED) {
        return;
    }
    bytes_ = mapped;
    wl_shm_pool* const pool = wl_shm_create_pool(shm, file.get(), static_cast<std::int32_t>(size_));
    buffer_.reset(wl_shm_pool_create_buffer(pool, 0, frame.size.width(), frame.size.height(), frame.stride,
                                            frame.format));
    wl_shm_pool_destroy(pool);
}

SharedFrame::~SharedFrame() {
    if (bytes_ != nullptr) {
        ::munmap(bytes_, size_);
    }
}

} // namespace amberquill::desktop
