#include "platform/linux/decoder/channel/MessageSocket.h"

#include <cerrno>
#include <cstring>
#include <sys/socket.h>

namespace amberquill::desktop {

namespace {

constexpr std::size_t controlBytes = CMSG_SPACE(maximumDescriptors * sizeof(int));

// Repeats a call that a signal interrupted.
template<typename Call>
ssize_t retryInterrupted(const Call& call) {
    while (true) {
        const ssize_t result = call();
        if (result >= 0 || errno != EINTR) {
            return result;
        }
    }
}

// Owns all received descriptors, so that they are closed even if the message is invalid.
void takeDescriptors(const cmsghdr& header, ReceivedMessage& message) {
    const std::size_t count = (header.cmsg_len - CMSG_LEN(0)) / sizeof(int);
    for (std::size_t i = 0; i < count; ++i) {
        int descriptor = -1;
        std::memcpy(&descriptor, CMSG_DATA(&header) + i * sizeof descriptor, sizeof descriptor);
        FileDescriptor owned(descriptor);
        if (message.descriptorCount < message.descriptors.size()) {
            message.descriptors.at(message.descriptorCount++) = std::move(owned);
        }
    }
}

} // namespace

std::optional<std::pair<FileDescriptor, FileDescriptor>> messageSockets() {
    std::array<int, 2> ends = {};
    if (::socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends.data()) != 0) {
        return std::nullopt;
    }
    return std::pair(FileDescriptor(ends[0]), FileDescriptor(ends[1]));
}

bool sendMessage(int socket, std::span<const std::byte> message, std::span<const int> descriptors) {
    if (message.empty() || descriptors.size() > maximumDescriptors) {
        return false;
    }
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-const-cast): what is sent is not written to
    iovec part = {const_cast<std::byte*>(message.data()), message.size()};
    alignas(cmsghdr) std::array<char, controlBytes> control = {};
    msghdr header = {};
    header.msg_iov = &part;
    header.msg_iovlen = 1;
    if (!descriptors.empty()) {
        header.msg_control = control.data();
        header.msg_controllen = CMSG_SPACE(descriptors.size_bytes());
        cmsghdr* const rights = CMSG_FIRSTHDR(&header);
        rights->cmsg_level = SOL_SOCKET;
        rights->cmsg_type = SCM_RIGHTS;
        rights->cmsg_len = CMSG_LEN(descriptors.size_bytes());
        std::memcpy(CMSG_DATA(rights), descriptors.data(), descriptors.size_bytes());
    }
    const ssize_t sent = retryInterrupted([&] { return ::sendmsg(socket, &header, MSG_NOSIGNAL); });
    return sent == static_cast<ssize_t>(message.size());
}

std::optional<ReceivedMessage> receiveMessage(int socket, std::span<std::byte> buffer) {
    iovec part = {buffer.data(), buffer.size()};
    alignas(cmsghdr) std::array<char, controlBytes> control = {};
    msghdr header = {};
    header.msg_iov = &part;
    header.msg_iovlen = 1;
    header.msg_control = control.data();
    header.msg_controllen = control.size();
    const ssize_t size = retryInterrupted([&] { return ::recvmsg(socket, &header, MSG_CMSG_CLOEXEC); });
    if (size < 0) {
        return std::nullopt;
    }
    // An empty message looks like a closed socket, but may have descriptors.
    ReceivedMessage message;
    message.size = static_cast<std::size_t>(size);
    message.isWhole = (header.msg_flags & MSG_TRUNC) == 0;
    for (cmsghdr* each = CMSG_FIRSTHDR(&header); each != nullptr; each = CMSG_NXTHDR(&header, each)) {
        if (each->cmsg_level == SOL_SOCKET && each->cmsg_type == SCM_RIGHTS) {
            takeDescriptors(*each, message);
        }
    }
    if (size == 0 || (header.msg_flags & MSG_CTRUNC) != 0) {
        return std::nullopt;
    }
    return message;
}

} // namespace amberquill::desktop
