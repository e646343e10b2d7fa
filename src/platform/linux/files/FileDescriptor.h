#pragma once

#include <QDeadlineTimer>
#include <sys/types.h>
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

// Waits no longer than that until something can be read from the descriptor, its end included; whether it
// can. What is there already counts at any time. Any thread.
[[nodiscard]] bool isReadableBy(int descriptor, QDeadlineTimer deadline);

// A descriptor of a child process that becomes readable at its end; not open on kernels without such a thing.
// Any thread.
[[nodiscard]] FileDescriptor processDescriptor(pid_t process);

} // namespace amberquill::desktop
