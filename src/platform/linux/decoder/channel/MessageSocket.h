#pragma once

#include "platform/linux/files/FileDescriptor.h"

#include <array>
#include <cstddef>
#include <optional>
#include <span>
#include <utility>

namespace amberquill::desktop {

// In one message.
inline constexpr std::size_t maximumDescriptors = 2;

struct ReceivedMessage {
    std::size_t size = 0; // bytes
    bool isWhole = false; // false: the message was longer than the buffer
    std::array<FileDescriptor, maximumDescriptors> descriptors; // the received ones first
    std::size_t descriptorCount = 0;
};

// A connected pair of sockets that keep message boundaries (SOCK_SEQPACKET). None: no descriptors left.
[[nodiscard]] std::optional<std::pair<FileDescriptor, FileDescriptor>> messageSockets();

// Sends a message that is not empty, with copies of descriptors. Blocks while the other end's buffer is full.
// False: the other end is gone.
[[nodiscard]] bool sendMessage(int socket, std::span<const std::byte> message,
                               std::span<const int> descriptors = {});

// Blocks until the next message. None: the other end is gone, or sent an empty message or too many
// descriptors (all of which are closed).
[[nodiscard]] std::optional<ReceivedMessage> receiveMessage(int socket, std::span<std::byte> buffer);

} // namespace amberquill::desktop
