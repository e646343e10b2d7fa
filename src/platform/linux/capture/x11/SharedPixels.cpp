#include "platform/linux/capture/x11/SharedPixels.h"

#include "platform/linux/files/FileDescriptor.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

namespace amberquill::desktop {

SharedPixels::SharedPixels(xcb_connection_t* connection, std::size_t size)
    : connection_(connection) {
    FileDescriptor file(::memfd_create("amberquill-pixels", MFD_CLOEXEC | MFD_ALLOW_SEALING));
    // Sealed, so that nobody who has it can take away what is mapped here.
    if (!file.isOpen() || ::ftruncate(file.get(), static_cast<off_t>(size)) != 0 ||
        ::fcntl(file.get(), F_ADD_SEALS, F_SEAL_SHRINK) != 0) {
        return;
    }
    void* const memory = ::mmap(nullptr, size, PROT_READ, MAP_SHARED, file.get(), 0);
    if (memory == MAP_FAILED) {
        return;
    }
    bytes_ = static_cast<unsigned char*>(memory);
    size_ = size;
    segment_ = xcb_generate_id(connection_);
    // Sending the descriptor closes it.
    xcb_shm_attach_fd(connection_, segment_, file.release(), 0);
}

SharedPixels::~SharedPixels() {
    if (bytes_ != nullptr) {
        xcb_shm_detach(connection_, segment_);
        ::munmap(bytes_, size_);
    }
}

} // namespace amberquill::desktop
