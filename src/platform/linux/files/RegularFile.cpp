#include "platform/linux/files/RegularFile.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace amberquill::desktop {
namespace {

// One read, repeated when a signal interrupts it.
qsizetype readSome(int file, char* to, qsizetype size) {
    while (true) {
        const ssize_t got = ::read(file, to, static_cast<std::size_t>(size));
        if (got >= 0 || errno != EINTR) {
            return got;
        }
    }
}

} // namespace

FileDescriptor openForReading(int folder, const char* path) {
    return FileDescriptor(::openat(folder, path, O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
}

std::optional<QByteArrayView> readRegularFile(int folder, const char* path, qsizetype limit,
                                              QByteArray& buffer) {
    return readRegularFile(openForReading(folder, path), limit, buffer);
}

std::optional<QByteArrayView> readRegularFile(const FileDescriptor& file, qsizetype limit,
                                              QByteArray& buffer) {
    struct stat status = {};
    if (!file.isOpen() || ::fstat(file.get(), &status) != 0) {
        return std::nullopt;
    }
    if (!S_ISREG(status.st_mode)) {
        errno = S_ISDIR(status.st_mode) ? EISDIR : EINVAL;
        return std::nullopt;
    }
    if (status.st_size > limit) {
        errno = EFBIG;
        return std::nullopt;
    }
    const auto expected = static_cast<qsizetype>(status.st_size);
    constexpr qsizetype step = 4096; // for files whose size is unknown or grows
    qsizetype size = 0;
    while (true) {
        if (buffer.size() <= size || buffer.size() <= expected) {
            buffer.resize(std::max(size, expected) + step);
        }
        const qsizetype room = buffer.size() - size;
        const qsizetype got = readSome(file.get(), buffer.data() + size, room);
        if (got < 0) {
            return std::nullopt;
        }
        if (size + got > limit) {
            errno = EFBIG;
            return std::nullopt;
        }
        size += got;
        // The file ends at a short read after exactly the expected size. Otherwise read once more.
        if (got == 0 || (size == expected && got < room)) {
            return QByteArrayView(buffer.constData(), size);
        }
    }
}

} // namespace amberquill::desktop
