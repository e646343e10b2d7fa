#pragma once

#include <cstddef>
#include <xcb/shm.h>
#include <xcb/xcb.h>

namespace amberquill::desktop {

// Memory that an X server writes pixels into (MIT-SHM 1.2, by a file descriptor: nothing is left behind when
// a program is killed).
class SharedPixels {
public:
    SharedPixels() = default;
    // Asks the server to share `size` bytes; `request` tells whether it does. Not shared where there is no
    // memory to be had.
    SharedPixels(xcb_connection_t* connection, std::size_t size);
    SharedPixels(const SharedPixels&) = delete;
    SharedPixels& operator=(const SharedPixels&) = delete;
    ~SharedPixels();

    [[nodiscard]] bool isShared() const { return bytes_ != nullptr; }
    [[nodiscard]] const unsigned char* bytes() const { return bytes_; }
    [[nodiscard]] std::size_t size() const { return size_; }
    [[nodiscard]] xcb_shm_seg_t segment() const { return segment_; }

private:
    xcb_connection_t* connection_ = nullptr;
    unsigned char* bytes_ = nullptr;
    std::size_t size_ = 0;
    xcb_shm_seg_t segment_ = 0;
};

} // namespace amberquill::desktop
