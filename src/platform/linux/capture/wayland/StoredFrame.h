#pragma once

#include "platform/ScreenCapture.h"
#include "platform/linux/capture/PixelLayout.h"

#include <QSize>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>

struct wl_buffer;
struct wl_shm;

namespace amberquill::desktop {

// The layout in which a compositor stores the picture of an output in our memory.
struct StoredFrame {
    PixelLayout pixels;
    std::uint32_t format = 0; // wl_shm.format
    QSize size;               // in memory, before rotation, in device pixels
    int stride = 0;           // bytes from one row to the next

    // From the values that the compositor proposes. None: an unsupported format, or sizes that are
    // inconsistent or larger than any output.
    static std::optional<StoredFrame> of(std::uint32_t format, std::uint32_t width, std::uint32_t height,
                                         std::uint32_t stride);

    [[nodiscard]] std::size_t bytes() const {
        return static_cast<std::size_t>(stride) * static_cast<std::size_t>(size.height());
    }
};

// How to read memory so that the picture is upright: swap the axes, then read columns or rows from their end.
struct Orientation {
    bool exchanged = false;
    bool fromRight = false;
    bool fromBottom = false;

    // By wl_output.transform, which may have any value, and by whether the rows are stored bottom up.
    static Orientation of(std::int32_t transform, bool bottomUp);

    bool operator==(const Orientation&) const = default;
};

// The upright picture. `memory` holds frame.bytes() bytes of any content. 1 ≤ shrink ≤ RowShrinker::most.
[[nodiscard]] ScreenPicture uprightPicture(const StoredFrame& frame, const Orientation& orientation,
                                           const unsigned char* memory, int shrink, bool alsoWhole);

// Memory shared with the compositor.
class SharedFrame {
public:
    // Zeroed. `buffer` is null if there is not enough memory.
    SharedFrame(wl_shm* shm, const StoredFrame& frame);
    SharedFrame(const SharedFrame&) = delete;
    SharedFrame& operator=(const SharedFrame&) = delete;
    ~SharedFrame();

    // Null: there is not enough memory.
    [[nodiscard]] wl_buffer* buffer() const { return buffer_.get(); }
    [[nodiscard]] const unsigned char* bytes() const { return static_cast<const unsigned char*>(bytes_); }

private:
    std::size_t size_;
    void* bytes_ = nullptr;
    std::unique_ptr<wl_buffer, void (*)(wl_buffer*)> buffer_;
};

} // namespace amberquill::desktop
