#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

struct wl_buffer;
struct wl_shm;

namespace amberquill::desktop {

struct StoredFrame;

// Memory that a compositor draws into, or from.
class SharedFrame {
public:
    // Filled with nothing. Without memory, where there is none.
    SharedFrame(wl_shm* shm, const StoredFrame& frame);
    SharedFrame(const SharedFrame&) = delete;
    SharedFrame& operator=(const SharedFrame&) = delete;
    ~SharedFrame();

    // Null: there is no memory.
    [[nodiscard]] wl_buffer* buffer() const { return buffer_.get(); }
    [[nodiscard]] const unsigned char* bytes() const { return static_cast<const unsigned char*>(bytes_); }

private:
    std::size_t size_;
    void* bytes_ = nullptr;
    std::unique_ptr<wl_buffer, void (*)(wl_buffer*)> buffer_;
};

} // namespace amberquill::desktop
