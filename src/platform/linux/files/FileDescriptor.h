#pragma once

#include <QDeadlineTimer>
#include <sys/types.h>
#include <unistd.h>
#include <utility>

namespace amberquill::desktop {

// Owns a file descriptor and closes it. Negative: none.
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

// Waits until data or the end can be read from the descriptor. False: not before the deadline. Checks at
// least once, even after the deadline. Any thread.
[[nodiscard]] bool isReadableBy(int descriptor, QDeadlineTimer deadline);

// A process descriptor (pidfd), which becomes readable when the child process ends. Not open if the kernel
// does not have them. Any thread.
[[nodiscard]] FileDescriptor processDescriptor(pid_t process);

} // namespace amberquill::desktop
