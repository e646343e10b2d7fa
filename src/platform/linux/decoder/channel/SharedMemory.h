#pragma once

#include "platform/linux/files/FileDescriptor.h"

#include <cstddef>
#include <optional>
#include <span>

namespace amberquill::desktop {

// Memory with these bytes in it, sealed: whoever has it can neither write to it nor change its size. Not
// open: there is none to be had.
[[nodiscard]] FileDescriptor sealedMemory(std::span<const std::byte> bytes);

// Zeros that several processes may write to, but whose size none can change.
[[nodiscard]] FileDescriptor writableMemory(std::size_t bytes);

// Shared memory as this process sees it. Unmapped when its owner goes; the descriptor may be closed before.
class MappedMemory {
public:
    enum class Access { Read, ReadAndWrite };

    // None: not of this size, or it could be made smaller while it is read, which would end the reader.
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

    // Written to only where it was mapped for that.
    [[nodiscard]] std::span<std::byte> bytes() { return bytes_; }
    [[nodiscard]] std::span<const std::byte> bytes() const { return bytes_; }

private:
    explicit MappedMemory(std::span<std::byte> bytes)
        : bytes_(bytes) {}

    std::span<std::byte> bytes_;
};

} // namespace amberquill::desktop
