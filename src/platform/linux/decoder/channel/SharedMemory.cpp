#include "platform/linux/decoder/channel/SharedMemory.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

namespace amberquill::desktop {

namespace {

constexpr int sizeSeals = F_SEAL_SHRINK | F_SEAL_GROW;

// For newer kernels, some of which refuse memory without this flag.
#ifndef MFD_NOEXEC_SEAL
#define MFD_NOEXEC_SEAL 0x0008U
#endif

FileDescriptor newMemory() {
    constexpr const char* name = "amberquill-icon";
    constexpr unsigned int flags = MFD_CLOEXEC | MFD_ALLOW_SEALING;
    FileDescriptor memory(::memfd_create(name, flags | MFD_NOEXEC_SEAL));
    if (!memory.isOpen() && errno == EINVAL) {
        memory = FileDescriptor(::memfd_create(name, flags));
    }
    return memory;
}

bool writeAll(int memory, std::span<const std::byte> bytes) {
    while (!bytes.empty()) {
        const ssize_t written = ::write(memory, bytes.data(), bytes.size());
        if (written < 0 && errno != EINTR) {
            return false;
        }
        bytes = bytes.subspan(written > 0 ? static_cast<std::size_t>(written) : 0);
    }
    return true;
}

bool seal(const FileDescriptor& memory, int seals) {
    return ::fcntl(memory.get(), F_ADD_SEALS, seals | F_SEAL_SEAL) == 0;
}

} // namespace

FileDescriptor sealedMemory(std::span<const std::byte> bytes) {
    FileDescriptor memory = newMemory();
    if (!memory.isOpen() || !writeAll(memory.get(), bytes) || !seal(memory, sizeSeals | F_SEAL_WRITE)) {
        return {};
    }
    return memory;
}

FileDescriptor writableMemory(std::size_t bytes) {
    FileDescriptor memory = newMemory();
    if (!memory.isOpen() || ::ftruncate(memory.get(), static_cast<off_t>(bytes)) != 0 ||
        !seal(memory, sizeSeals)) {
        return {};
    }
    return memory;
}

std::optional<MappedMemory> MappedMemory::map(const FileDescriptor& memory, std::size_t bytes,
                                              Access access) {
    // lseek() instead of fstat(): the C library may implement fstat() by a system call that takes paths,
    // which the sandbox denies.
    const int seals = ::fcntl(memory.get(), F_GET_SEALS);
    if (seals < 0 || (seals & F_SEAL_SHRINK) == 0 ||
        ::lseek(memory.get(), 0, SEEK_END) != static_cast<off_t>(bytes)) {
        return std::nullopt;
    }
    if (bytes == 0) {
        return MappedMemory({});
    }
    // Older kernels cannot map memory that is sealed against writing as shared, not even for reading.
    const bool isWritable = access == Access::ReadAndWrite;
    void* const start = ::mmap(nullptr, bytes, isWritable ? PROT_READ | PROT_WRITE : PROT_READ,
                               isWritable ? MAP_SHARED : MAP_PRIVATE, memory.get(), 0);
    if (start == MAP_FAILED) {
        return std::nullopt;
    }
    return MappedMemory({static_cast<std::byte*>(start), bytes});
}

MappedMemory::~MappedMemory() {
    if (!bytes_.empty()) {
        ::munmap(bytes_.data(), bytes_.size());
    }
}

} // namespace amberquill::desktop
