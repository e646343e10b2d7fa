#pragma once

#include "platform/linux/files/FileDescriptor.h"

#include <array>
#include <cstddef>
#include <optional>
#include <span>
#include <utility>

namespace amberquill::desktop {

// The most descriptors that come with a message.
inline constexpr std::size_t mostDescriptors = 2;

struct ReceivedMessage {
    std::size_t size = 0; // bytes; longer messages were cut off, and say so:
    bool isWhole = false;
    std::array<FileDescriptor, mostDescriptors> descriptors; // those that came, first
    std::size_t descriptorCount = 0;
};

// Two ends of a local connection that keeps messages apart (SOCK_SEQPACKET). None: no descriptors left.
[[nodiscard]] std::optional<std::pair<FileDescriptor, FileDescriptor>> messageSockets();

// Sends a message that is not empty, with descriptors, which stay the sender's as well. Waits while the other
// end has not read what came before. False: the other end is gone.
[[nodiscard]] bool sendMessage(int socket, std::span<const std::byte> message,
                               std::span<const int> descriptors = {});

// Waits for the next message. None: the other end is gone, or sent an empty message or more descriptors than
// it may (none of which stays open).
[[nodiscard]] std::optional<ReceivedMessage> receiveMessage(int socket, std::span<std::byte> buffer);

} // namespace amberquill::desktop
