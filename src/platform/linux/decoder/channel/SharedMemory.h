#pragma once

#include "platform/linux/files/FileDescriptor.h"

#include <cstddef>
#include <optional>
#include <span>

namespace amberquill::desktop {

// Shared memory with these bytes, sealed against writes and changes of its size. Not open: no memory.
[[nodiscard]] FileDescriptor sealedMemory(std::span<const std::byte> bytes);

// Writable shared memory of zeros, sealed against changes of its size. Not open: no memory.
[[nodiscard]] FileDescriptor writableMemory(std::size_t bytes);

// A mapping of shared memory, unmapped by the destructor. The descriptor may be closed before.
class MappedMemory {
public:
    enum class Access { Read, ReadAndWrite };

    // None: of another size, or not sealed against shrinking, which would crash the reader.
    [[nodiscard]] static std::optional<MappedMemory> map(const FileDescriptor& memory, std::size_t bytes,
                                                         Access access);
    MappedMemory(const MappedMemory&) = delete;
    MappedMemory& operator=(const MappedMemory&) = delete;
    MappedMemory(MappedMemory&& other) noexcept
        : bytes_(std::exchange(other.bytes_, {})) {}
    MappedMemory& operator=(MappedMemory&& other) noexcept {
        std::swap(bytes_, other.bytes_);
        return *this;
    }
    ~MappedMemory();

    // To be written to only with ReadAndWrite.
    [[nodiscard]] std::span<std::byte> bytes() { return bytes_; }
    [[nodiscard]] std::span<const std::byte> bytes() const { return bytes_; }

private:
    explicit MappedMemory(std::span<std::byte> bytes)
        : bytes_(bytes) {}

    std::span<std::byte> bytes_;
};

} // namespace amberquill::desktop
