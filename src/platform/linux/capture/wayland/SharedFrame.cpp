#include "platform/linux/capture/wayland/SharedFrame.h"

#include "platform/linux/capture/wayland/StoredFrame.h"
#include "platform/linux/files/FileDescriptor.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>
#include <wayland-client.h>

namespace amberquill::desktop {

SharedFrame::SharedFrame(wl_shm* shm, const StoredFrame& frame)
    : size_(frame.bytes())
    , buffer_(nullptr, [](wl_buffer* it) { wl_buffer_destroy(it); }) {
    const FileDescriptor file(::memfd_create("amberquill", MFD_CLOEXEC | MFD_ALLOW_SEALING));
    if (file.get() < 0 || ::ftruncate(file.get(), static_cast<off_t>(size_)) != 0) {
        return;
    }
    // Nobody who has it too can take it away while it is read.
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
