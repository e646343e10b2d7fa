#pragma once

#include <unistd.h>
#include <utility>

namespace amberquill::desktop {

// An open file that is closed when its owner goes. Negative: none.
class FileDescriptor {
public:
    FileDescriptor() = default;
    explicit FileDescriptor(int descriptor)
        : descriptor_(descriptor) {}
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;
    FileDescriptor(FileDescriptor&& other) noexcept
        : descriptor_(other.release()) {}
    FileDescriptor& operator=(FileDescriptor&& other) noexcept {
        if (this != &other) {
            close();
            descriptor_ = other.release();
        }
        return *this;
    }
    ~FileDescriptor() { close(); }

    [[nodiscard]] bool isOpen() const { return descriptor_ >= 0; }
    [[nodiscard]] int get() const { return descriptor_; }

    // Hands the descriptor over: the caller closes it.
    [[nodiscard]] int release() { return std::exchange(descriptor_, -1); }

    void close() {
        if (isOpen()) {
            ::close(release());
        }
    }

private:
    int descriptor_ = -1;
};

} // namespace amberquill::desktop
